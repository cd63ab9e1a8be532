// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ToolPanel.h"

#include "PagesFixture.h"
#include "parts/NumberField.h"
#include "shell/Slider.h"
#include "tableau/ToolPage.h"

using namespace velmora;

namespace {
constexpr std::array kPages{"TB1", "TB2", "TB4"};

class ToolPanelTest : public PagesFixture {
protected:
    static std::vector<QWidget*> partsOf(const QWidget& page) {
        std::vector<QWidget*> parts;
        for (QWidget* one : page.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (one->isVisible())
                parts.push_back(one);
        return parts;
    }
    static std::string nameOf(const QWidget& of) {
        const auto* label = qobject_cast<const QLabel*>(&of);
        return label && of.objectName().isEmpty() ? label->text().toStdString()
                                                  : of.objectName().toStdString();
    }
    /// Everything lies within the page, by itself, and large enough for its words.
    static void expectNothingCut(const QWidget& page, int width) {
        const auto parts = partsOf(page);
        EXPECT_GT(parts.size(), 10U);
        for (const QWidget* one : parts) {
            const std::string where = nameOf(*one) + " at " + std::to_string(width);
            EXPECT_TRUE(page.rect().contains(one->geometry())) << where;
            EXPECT_GT(one->width(), 0) << where;
            for (const QWidget* other : parts)
                if (one < other) {
                    EXPECT_FALSE(one->geometry().intersects(other->geometry()))
                        << where << " and " << nameOf(*other);
                }
            if (const auto* label = qobject_cast<const QLabel*>(one)) {
                EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width()) << where;
            } else if (const auto* list = qobject_cast<const QComboBox*>(one)) {
                QStyleOptionComboBox option;
                option.initFrom(list);
                const QRect text = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                                 QStyle::SC_ComboBoxEditField, list);
                for (int item = 0; item < list->count(); ++item)
                    EXPECT_LE(list->fontMetrics().horizontalAdvance(list->itemText(item).trimmed()),
                              text.width())
                        << where;
            } else if (qobject_cast<const QAbstractButton*>(one) && one->objectName() != "CmdInst") {
                EXPECT_GE(one->width(), std::min(one->sizeHint().width(), 14)) << where;
                if (!static_cast<const QAbstractButton*>(one)->text().isEmpty()) {
                    EXPECT_GE(one->width(), one->sizeHint().width()) << where;
                }
            }
        }
    }
};
} // namespace

TEST_F(ToolPanelTest, NothingIsCutAndNothingOverlapsInAnyWidth) {
    effects().Combo3 = 2; // the longest hint
    open(ToolPanel::Effects);
    panel().effects().showEffects(127, -64, 127, 127);
    effects() = {.vol3 = 127, .T1 = 127, .T2 = -64, .T3 = 127, .T4 = 127};
    for (const int width : {880, 999, 1000, 1024, 1105, 1233, 1279, 1280, 1320, 1366, 1920}) {
        window().resize(width, 600);
        for (int page = 0; page < 3; ++page) {
            window().Lb1_Click(17 + page);
            panel().refresh();
            QApplication::processEvents();
            expectNothingCut(part(kPages[static_cast<std::size_t>(page)]), width);
        }
    }
}

TEST_F(ToolPanelTest, EveryControlHasATipAndAName) {
    open(ToolPanel::Maker);
    for (const char* page : kPages)
        for (const QWidget* one : part(page).findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (one->focusPolicy() == Qt::NoFocus)
                continue;
            EXPECT_FALSE(one->accessibleName().isEmpty()) << nameOf(*one);
            const Tip* tip = tips.toolTip(*one);
            ASSERT_TRUE(tip) << nameOf(*one);
            EXPECT_FALSE(tip->text.isEmpty()) << nameOf(*one);
        }
}

TEST_F(ToolPanelTest, TheToolTextsAreThoseOfTheFields) {
    open(ToolPanel::Maker);
    const auto tipOf = [this](const char* name) { return tips.toolTip(part(name))->text.toStdString(); };
    EXPECT_EQ(tipOf("IStart1"), "Select Starting Note Number  [-<<|>>+]");
    EXPECT_EQ(tipOf("vcrStart"), "Select Starting Note Number  [-<<|>>+]");
    EXPECT_EQ(tipOf("INotes"), "Select Number of Playable Notes in Loop [-<<|>>+]");
    EXPECT_EQ(tipOf("Chkperc"), "Duplicate All Percussion channels");
    EXPECT_EQ(tipOf("lblVolume"), "Select Single note Volume");
    EXPECT_EQ(tips.toolTip(part("lblVolume"))->title, "Single note Volume");
    EXPECT_EQ(tipOf("Combo3"), "Select Single note Chord Type");
}

TEST_F(ToolPanelTest, TabGoesFromLeftToRight) {
    for (const int tool : {0, 1, 2}) {
        open(static_cast<ToolPanel::Page>(tool));
        const QWidget& page = part(kPages[static_cast<std::size_t>(tool)]);
        int last = -1;
        int found = 0;
        const QWidget* one = &button("Lb1", 17 + tool);
        for (one = one->nextInFocusChain(); one != &button("Lb1", 16); one = one->nextInFocusChain()) {
            if (one->parentWidget() != &page || one->focusPolicy() == Qt::NoFocus)
                continue;
            EXPECT_GE(one->x(), last) << nameOf(*one);
            last = one->x();
            ++found;
        }
        EXPECT_GE(found, 11) << tool;
    }
}

TEST_F(ToolPanelTest, TheTwoPagesShowTheSameCycle) {
    open(ToolPanel::Maker);
    type("Txtlen", "60");
    type("TxtRep", "12");
    type("TxtNt", "8");
    EXPECT_EQ(shownIn("Txtnotes"), "60");
    EXPECT_EQ(shownIn("Txtbeats"), "12");
    EXPECT_EQ(shownIn("Txtrepeat"), "8");
    open(ToolPanel::Editor);
    type("Txtbeats", "5");
    EXPECT_EQ(shownIn("TxtRep"), "5");
    EXPECT_EQ(shownIn("TxtNt"), "5");
    EXPECT_EQ(part<Slider>("IRepeat").value(), 5);
}

TEST_F(ToolPanelTest, TheLastFieldWrittenWins) {
    open(ToolPanel::Maker);
    type("Txtlen", "60");
    open(ToolPanel::Editor);
    type("Txtnotes", "99");
    EXPECT_EQ(edit().TotalNotes, 99);
    EXPECT_EQ(shownIn("Txtlen"), "99");
}
