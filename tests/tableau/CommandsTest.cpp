// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Commands.h"

#include "shell/IconSet.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

using namespace velmora;

namespace {
struct Row {
    const char* title;
    CommandPlace place;
    bool toggles = false;
};
using P = CommandPlace;

constexpr auto kCmd2Rows = std::to_array<Row>({
    {"Clear all notes", P::Bar},
    {"Open File", P::Bar},
    {"Save as", P::Bar},
    {"Play", P::Bar, true},
    {"Play Segment", P::Bar},
    {"Pause", P::Bar},
    {"Stop", P::Bar},
    {"Return to Start", P::Bar},
    {"Play line", P::Bar, true},
    {"Play Continuous Loop", P::Bar, true},
    {"Draw/Select mode toggle", P::Bar, true},
    {"Copy Selection", P::Bar},
    {"Cut Selection", P::Bar},
    {"Paste (Overwrite)", P::Bar},
    {"Paste (Insert)", P::Bar},
    {"Insert # Space(s) ", P::Bar},
    {"Duplicate notes", P::Bar},
});
constexpr auto kLb1Rows = std::to_array<Row>({
    {"Clear all notes", P::Editor},
    {"Setup Toolbar", P::BarRight},
    {"Keyboard", P::BarRight},
    {"Recording Studio", P::BarRight},
    {"Undo Last note", P::Bar},
    {"Songwriter", P::BarRight},
    {"Stop all sound", P::Bar},
    {"Tutorial", P::BarRight},
    {"Help", P::BarRight},
    {"Percussion Tableau", P::Bar, true},
    {"Colorful Line", P::Bar, true},
    {"Traditional Notation", P::Bar, true},
    {"Accidentals", P::Bar, true},
    {"Erase on Right-click", P::TextLine, true},
    {"Menu on Right-Click", P::TextLine, true},
    {"Show Tips on Right-Click", P::TextLine, true},
    {"Editing Toolbar", P::ToolPanel},
    {"Melody Maker", P::Tab, true},
    {"Single Note Effects", P::Tab, true},
    {"Score Editor", P::Tab, true},
    {"Undo all Single Note Effects", P::Effects},
    {"Static Note Test (Toggle)", P::Effects, true},
    {"Create Melody", P::Maker},
    {"Undo Melody", P::Maker},
    {"Draw/Select mode toggle", P::Editor, true},
    {"Copy Selection", P::Editor},
    {"Cut Selection", P::Editor},
    {"Paste (Insert)", P::Editor},
    {"Paste (Overwrite)", P::Editor},
    {"Insert # Space(s) ", P::Editor},
    {"Duplicate notes", P::Editor},
    {"Chord on Right-Click", P::TextLine, true},
    {"Redo", P::Bar},
});

template<class Commands, class Rows>
void expectRows(const Commands& commands, const Rows& rows) {
    ASSERT_EQ(commands.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(commands[i].title, rows[i].title) << i;
        EXPECT_EQ(commands[i].place, rows[i].place) << i;
        EXPECT_EQ(commands[i].toggles, rows[i].toggles) << i;
    }
}

std::vector<CommandRow> all() {
    std::vector<CommandRow> rows(kCmd2.begin(), kCmd2.end());
    rows.insert(rows.end(), kLb1.begin(), kLb1.end());
    return rows;
}
} // namespace

TEST(CommandsTest, Cmd2IsInTheOrderOfItsIndices) {
    expectRows(kCmd2, kCmd2Rows);
}

TEST(CommandsTest, Lb1IsInTheOrderOfItsIndices) {
    expectRows(kLb1, kLb1Rows);
}

TEST(CommandsTest, EveryIconIsInTheSet) {
    const auto names = iconNames();
    for (const CommandRow& row : all()) {
        if (!row.icon.empty()) {
            EXPECT_TRUE(std::ranges::binary_search(names, row.icon)) << row.title << ": " << row.icon;
        }
    }
}

TEST(CommandsTest, EveryButtonShowsAnIconOrWordsAndExplainsItself) {
    for (const CommandRow& row : all()) {
        EXPECT_FALSE(row.icon.empty() && row.label.empty()) << row.title;
        EXPECT_FALSE(row.text.empty()) << row.title;
    }
}

TEST(CommandsTest, NoTwoButtonsOfTheBarLookTheSame) {
    std::set<std::string_view> icons;
    for (const CommandRow& row : all()) {
        if (row.place == CommandPlace::Bar || row.place == CommandPlace::BarRight) {
            EXPECT_TRUE(icons.insert(row.icon).second) << row.icon;
        }
    }
}
