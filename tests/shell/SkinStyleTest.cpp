// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinStyle.h"

#include "WindowFixture.h"
#include "shell/SkinPainter.h"

#include <QtWidgets>

using namespace velmora;

namespace {
Rgb rgb(const QColor& colour) {
    return {static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
            static_cast<std::uint8_t>(colour.blue())};
}
/// The part of a scroll bar, as the style places it.
QRect scrollPart(const QScrollBar& bar, QStyle::SubControl part) {
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    option.sliderPosition = bar.sliderPosition();
    option.upsideDown = bar.invertedAppearance();
    option.state.setFlag(QStyle::State_Horizontal, bar.orientation() == Qt::Horizontal);
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &bar);
}
} // namespace

class SkinStyleTest : public WindowFixture {};

TEST_F(SkinStyleTest, ControlsHaveTheirHeights) {
    QPushButton button("Encode File");
    EXPECT_EQ(button.sizeHint().height(), 24);
    EXPECT_GE(button.sizeHint().width(), button.fontMetrics().horizontalAdvance(button.text()) + 24);
    EXPECT_EQ(button.sizeHint().width() % 4, 0);
    EXPECT_EQ(QLineEdit().sizeHint().height(), 24);
    EXPECT_EQ(QSpinBox().sizeHint().height(), 24);
    QComboBox combo;
    combo.addItem("Minor 7th");
    EXPECT_EQ(combo.sizeHint().height(), 24);
    QTabBar tabs;
    tabs.addTab("Sound ");
    EXPECT_EQ(tabs.tabRect(0).height(), 24);
}

TEST_F(SkinStyleTest, MeasuresAreThoseOfTheLook) {
    const QStyle& style = *QApplication::style();
    struct Row {
        QStyle::PixelMetric metric;
        int pixels;
    };
    for (const Row row : {Row{QStyle::PM_IndicatorWidth, 14},
                          {QStyle::PM_IndicatorHeight, 14},
                          {QStyle::PM_ExclusiveIndicatorWidth, 14},
                          {QStyle::PM_CheckBoxLabelSpacing, 6},
                          {QStyle::PM_RadioButtonLabelSpacing, 6},
                          {QStyle::PM_ScrollBarExtent, 16},
                          {QStyle::PM_ScrollBarSliderMin, 28},
                          {QStyle::PM_SliderLength, 12},
                          {QStyle::PM_SliderThickness, 20},
                          {QStyle::PM_FocusFrameHMargin, 2}})
        EXPECT_EQ(style.pixelMetric(row.metric), row.pixels) << row.metric;
}

TEST_F(SkinStyleTest, RowsOfMenusAndListsHaveTheirHeights) {
    QMenu menu;
    QAction* row = menu.addAction("Open File\tCtrl+O");
    QAction* rule = menu.addSeparator();
    menu.addAction("Exit");
    EXPECT_EQ(menu.actionGeometry(row).height(), 24);
    EXPECT_EQ(menu.actionGeometry(rule).height(), 8);
    QListWidget list;
    list.addItem("Acoustic Grand");
    EXPECT_EQ(list.sizeHintForRow(0), 20);
}

TEST_F(SkinStyleTest, WordsAndShortcutsOfAMenuDoNotTouch) {
    QMenu menu;
    QAction* row = menu.addAction("Paste (insert)\tCtrl+Shift+V");
    const QFontMetrics metrics = menu.fontMetrics();
    const int needed =
        metrics.horizontalAdvance("Paste (insert)") + metrics.horizontalAdvance("Ctrl+Shift+V");
    EXPECT_GE(menu.actionGeometry(row).width(), 24 + needed + 24);
}

TEST_F(SkinStyleTest, TheArrowsOfAScrollBarAreTwentyLongAndTheThumbIsSeen) {
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
        QScrollBar bar(orientation);
        bar.resize(orientation == Qt::Horizontal ? QSize(200, 16) : QSize(16, 200));
        bar.setRange(0, 100000);
        bar.setPageStep(10);
        const auto length = [&](QStyle::SubControl part) {
            const QRect rect = scrollPart(bar, part);
            return orientation == Qt::Horizontal ? rect.width() : rect.height();
        };
        EXPECT_EQ(length(QStyle::SC_ScrollBarSubLine), 20);
        EXPECT_EQ(length(QStyle::SC_ScrollBarAddLine), 20);
        EXPECT_EQ(length(QStyle::SC_ScrollBarSlider), 28);
        bar.setValue(bar.maximum());
        EXPECT_EQ(length(QStyle::SC_ScrollBarAddPage), 0);
        EXPECT_EQ(length(QStyle::SC_ScrollBarSubPage), 160 - 28);
    }
}

TEST_F(SkinStyleTest, AThumbIsAsLongAsItsShare) {
    QScrollBar bar(Qt::Horizontal);
    bar.resize(240, 16);
    bar.setRange(0, 100);
    bar.setPageStep(100);
    EXPECT_EQ(scrollPart(bar, QStyle::SC_ScrollBarSlider), QRect(20, 0, 100, 16));
    bar.setRange(0, 0);
    EXPECT_EQ(scrollPart(bar, QStyle::SC_ScrollBarSlider), QRect(20, 0, 200, 16));
    bar.resize(30, 16);
    EXPECT_EQ(scrollPart(bar, QStyle::SC_ScrollBarSubLine).width(), 15) << "too short for its arrows";
    EXPECT_TRUE(scrollPart(bar, QStyle::SC_ScrollBarSlider).isEmpty());
}

TEST_F(SkinStyleTest, WhatStandsInAGroupKeepsOffItsHeading) {
    QGroupBox group("Score Length");
    group.resize(200, 120);
    EXPECT_EQ(group.contentsRect(), QRect(12, 32, 176, 76));
    group.setTitle({});
    EXPECT_EQ(group.contentsRect(), QRect(12, 12, 176, 96));
}

TEST_F(SkinStyleTest, ThePaletteIsReadableInEverySkin) {
    for (int type = 1; type <= kSkinCount; ++type) {
        const QPalette palette = skinPalette(skinOf(type));
        const auto ratio = [&](QPalette::ColorRole ink, QPalette::ColorRole ground) {
            return contrast(rgb(palette.color(ink)), rgb(palette.color(ground)));
        };
        EXPECT_GE(ratio(QPalette::WindowText, QPalette::Window), 4.5) << type;
        EXPECT_GE(ratio(QPalette::Text, QPalette::Base), 4.5) << type;
        EXPECT_GE(ratio(QPalette::Text, QPalette::AlternateBase), 4.5) << type;
        EXPECT_GE(ratio(QPalette::ButtonText, QPalette::Button), 4.5) << type;
        EXPECT_GE(ratio(QPalette::HighlightedText, QPalette::Highlight), 4.5) << type;
        EXPECT_GE(ratio(QPalette::PlaceholderText, QPalette::Window), 4.5) << type;
        EXPECT_GE(ratio(QPalette::Link, QPalette::Base), 4.5) << type;
        EXPECT_GE(ratio(QPalette::ToolTipText, QPalette::ToolTipBase), 4.5) << type;
    }
}

TEST_F(SkinStyleTest, ADialogShowsWhichButtonEnterPressesAndWhichHasTheFocus) {
    QDialog dialog;
    QPushButton button("Yes", &dialog);
    button.setFocusPolicy(Qt::StrongFocus);
    button.setAutoDefault(false);
    button.resize(68, 24);
    open(dialog);
    button.clearFocus();
    const QImage plain = button.grab().toImage();
    button.setDefault(true);
    const QImage standard = button.grab().toImage();
    EXPECT_NE(plain, standard);
    dialog.setAttribute(Qt::WA_KeyboardFocusChange);
    button.setFocus();
    ASSERT_TRUE(button.hasFocus());
    EXPECT_NE(button.grab().toImage(), standard);
}

TEST_F(SkinStyleTest, ADisabledControlLooksSo) {
    for (int type = 1; type <= kSkinCount; ++type) {
        skins->Skintype_Click(type);
        QLineEdit line("text");
        QSpinBox spin;
        QComboBox combo;
        QCheckBox check("text");
        QSlider slider(Qt::Horizontal);
        slider.setValue(40);
        QScrollBar bar(Qt::Horizontal);
        for (QWidget* widget : std::initializer_list<QWidget*>{&line, &spin, &combo, &check, &slider, &bar}) {
            widget->resize(100, 24);
            const QImage enabled = widget->grab().toImage();
            widget->setEnabled(false);
            EXPECT_NE(enabled, widget->grab().toImage()) << type << " " << widget->metaObject()->className();
        }
    }
}

TEST_F(SkinStyleTest, TheSignOfMenusWithoutRoomFollowsTheSkin) {
    const auto sign = [this](int skin) {
        skins->Skintype_Click(skin);
        return QApplication::style()
            ->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton)
            .pixmap(16, 16)
            .toImage();
    };
    EXPECT_NE(sign(6), sign(7)); // light on dark, dark on light
}
