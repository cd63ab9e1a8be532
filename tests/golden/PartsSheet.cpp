// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/PartsSheet.h"

#include "golden/GoldenWindows.h"
#include "shell/CommandButton.h"
#include "shell/FramePainter.h"
#include "shell/SkinPainter.h"

#include <QtWidgets>

namespace velmora {

namespace {
constexpr int kState = 72; ///< the width of a column
constexpr int kBlock = 5 * kState + 8;
constexpr int kBlockHeight = 176;
constexpr int kFieldsTop = 2 * kBlockHeight + 12;

enum class Look : std::uint8_t { Normal, Hot, Pressed, Checked, Disabled };
constexpr std::array kLooks{Look::Normal, Look::Hot, Look::Pressed, Look::Checked, Look::Disabled};

void give(QAbstractButton& button, Look look) {
    button.setAttribute(Qt::WA_UnderMouse, look == Look::Hot);
    button.setEnabled(look != Look::Disabled);
    button.setDown(look == Look::Pressed);
    button.setCheckable(look == Look::Checked);
    button.setChecked(look == Look::Checked);
}

struct Form {
    ButtonForm form;
    const char* words;
    QRect place; ///< from the upper left corner of its column
};
constexpr std::array kForms{Form{ButtonForm::Icon, "", {16, 20, 28, 28}},
                            Form{ButtonForm::IconAndText, "Loop", {0, 52, 68, 28}},
                            Form{ButtonForm::IconOverText, "Loop", {8, 84, 48, 52}},
                            Form{ButtonForm::Text, "Button", {0, 140, 68, 24}}};

/// A window shows the ring by itself; the sheet is none.
void ring(QWidget& widget) {
    (new QFocusFrame(&widget))->setWidget(&widget);
}
} // namespace

PartsSheet::PartsSheet(const Appearance& look) {
    setFixedSize(kSize);
    for (std::size_t style = 0; style < looks_.size(); ++style)
        looks_[style] = {.skinType = look.skinType, .buttonStyle = static_cast<int>(style) + 1};
    addButtons();
    addFields();
    addChoices();
    addSliders();
    addTabs();
}

void PartsSheet::addButtons() {
    for (std::size_t style = 0; style < looks_.size(); ++style) {
        const QPoint corner(12 + static_cast<int>(style % 3) * kBlock,
                            8 + static_cast<int>(style / 3) * kBlockHeight);
        for (std::size_t column = 0; column < kLooks.size(); ++column)
            for (const Form& form : kForms) {
                auto* button = new CommandButton(looks_[style], form.form, this);
                button->setFace("loop", form.words);
                button->setGeometry(
                    form.place.translated(corner + QPoint(static_cast<int>(column) * kState, 0)));
                give(*button, kLooks[column]);
            }
    }
}

void PartsSheet::addFields() {
    for (const bool enabled : {true, false}) {
        const int y = kFieldsTop + 20 + (enabled ? 0 : 36);
        auto* line = new QLineEdit("Line edit", this);
        line->setGeometry(12, y, 120, 24);
        auto* spin = new QSpinBox(this);
        spin->setValue(64);
        spin->setAlignment(Qt::AlignCenter);
        spin->setGeometry(144, y, 72, 24);
        auto* combo = new QComboBox(this);
        combo->addItems({"Minor 7th"});
        combo->setGeometry(228, y, 128, 24);
        auto* button = new QPushButton("Push button", this);
        button->setGeometry(368, y, 96, 24);
        for (QWidget* widget : std::initializer_list<QWidget*>{line, spin, combo, button})
            widget->setEnabled(enabled);
    }
    auto* line = new QLineEdit("Focus", this);
    line->setGeometry(12, kFieldsTop + 92, 120, 24);
    auto* button = new QPushButton("Focus", this);
    button->setGeometry(368, kFieldsTop + 92, 96, 24);
    auto* combo = new QComboBox(this);
    combo->setEditable(true);
    combo->addItems({"Editable"});
    combo->setGeometry(228, kFieldsTop + 92, 128, 24);
    ring(*line);
    ring(*button);
}

void PartsSheet::addChoices() {
    int row = 0;
    for (const Look look : kLooks)
        for (const bool on : {false, true}) {
            if (look == Look::Checked)
                continue;
            const int y = kFieldsTop + 20 + 24 * (row / 2);
            auto* box = new QCheckBox(on ? "Melody" : "Off", this);
            auto* radio = new QRadioButton(on ? "Notes (SNG)" : "Off", this);
            radio->setAutoExclusive(false);
            give(*box, look);
            give(*radio, look);
            for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{box, radio}) {
                button->setCheckable(true);
                button->setChecked(on);
            }
            box->setGeometry(on ? 536 : 480, y, on ? 76 : 52, 20);
            radio->setGeometry(on ? 676 : 620, y, on ? 100 : 52, 20);
            ++row;
        }
}

void PartsSheet::addSliders() {
    for (const bool enabled : {true, false}) {
        auto* slider = new QSlider(Qt::Horizontal, this);
        slider->setRange(0, 127);
        slider->setValue(72);
        slider->setGeometry(12, kFieldsTop + 132 + (enabled ? 0 : 24), 204, 20);
        slider->setEnabled(enabled);
        auto* across = new QScrollBar(Qt::Horizontal, this);
        across->setRange(0, enabled ? 100 : 0);
        across->setPageStep(40);
        across->setValue(20);
        across->setGeometry(12, kFieldsTop + 188 + (enabled ? 0 : 24), 204, 16);
    }
    auto* upright = new QSlider(Qt::Vertical, this);
    upright->setValue(60);
    upright->setGeometry(232, kFieldsTop + 132, 20, 96);
    auto* down = new QScrollBar(Qt::Vertical, this);
    down->setRange(0, 100);
    down->setPageStep(40);
    down->setGeometry(268, kFieldsTop + 132, 16, 96);
}

void PartsSheet::addTabs() {
    auto* tabs = new QTabWidget(this);
    for (const char* caption : {"Polyphonics", "Channels", "Sound "})
        tabs->addTab(new QWidget(tabs), caption);
    tabs->setGeometry(12, kFieldsTop + 244, 272, 80);
    auto* group = new QGroupBox("Score Length", this);
    group->setGeometry(296, kFieldsTop + 132, 168, 72);
    auto* list = new QListWidget(this);
    list->addItems({"Acoustic Grand", "Bright Acoustic", "Electric Grand", "Honky-tonk"});
    list->setCurrentRow(1);
    list->setGeometry(296, kFieldsTop + 212, 168, 112);
    auto* bar = new QProgressBar(this);
    bar->setValue(40);
    bar->setGeometry(480, kFieldsTop + 124, 132, 20);
}

void PartsSheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Skin& skin = looks_[0].skin();
    paintPanel(painter, skin, rect());
    painter.setFont(textFont(10));
    painter.setPen(toQColor(skin.dim));
    for (std::size_t style = 0; style < kButtonStyles.size(); ++style) {
        const std::string_view caption = kButtonStyles[style].caption;
        painter.drawText(12 + static_cast<int>(style % 3) * kBlock,
                         18 + static_cast<int>(style / 3) * kBlockHeight,
                         caption.empty() ? QStringLiteral("Default") : QString::fromUtf8(caption));
    }
    int x = 480;
    for (const TitleSign sign :
         {TitleSign::Help, TitleSign::Minimize, TitleSign::Maximize, TitleSign::Restore, TitleSign::Close})
        for (int row = 0; row < 3; ++row)
            paintTitleButton(painter, skin,
                             QRectF(x + 24 * static_cast<int>(sign), kFieldsTop + 156 + 24 * row, 22, 18),
                             sign, row == 1, row == 2);
}

QImage pictureOfParts(const Appearance& look, Frmmenu& menu, qreal scale) {
    PartsSheet sheet(look);
    sheet.show();
    QImage all = pictureOf(sheet, scale);
    QPainter painter(&all);
    for (const char* item : {"mnuEdit", "mnuPercussion", "mnuRecordtool", "mnuOpen", "mnuExit"})
        menu.bind(sheet, item, [] {});
    for (const int skin : {1, 2, 3})
        menu.bind(sheet, "mnuSkin", skin, [] {});
    for (const char* item : {"mnuEdit", "mnuPercussion"})
        menu.item(item).setChecked(true);
    menu.choose("mnuSkin", 1);
    const auto place = [&](const char* popup, int x, int y, QAction* active) {
        QMenu& shown = menu.popup(popup);
        shown.popup(QPoint(0, 0));
        shown.setActiveAction(active);
        painter.drawImage(QPoint(x, y), pictureOf(shown, scale));
        shown.hide();
    };
    place("mnupopup9", 788, kFieldsTop, &menu.item("mnuRecordtool"));
    place("mnuInterface", 980, kFieldsTop, &menu.item("mnuSkin", 2));
    place("mnupopup6", 620, kFieldsTop + 140, &menu.item("mnuSave2"));
    return all;
}

} // namespace velmora
