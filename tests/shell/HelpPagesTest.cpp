// SPDX-License-Identifier: GPL-2.0-or-later
// The pages that come with the program.
#include "shell/HelpLibrary.h"

#include <array>
#include <map>
#include <set>

#include <gmock/gmock.h>

using namespace velmora;
using testing::HasSubstr;
using testing::Not;

namespace {
/// Every caption of the composing window's menus.
constexpr auto kCaptions = std::to_array<std::string_view>({
    "Open File",
    "Open a demo",
    "Recent files",
    "Save as",
    "Save",
    "Exit",
    "Clear All",
    "Cut selection",
    "Copy selection",
    "Paste (insert)",
    "Paste (overwrite)",
    "Erase on Right-click",
    "Menu on Right-Click",
    "Show Tips on Right-Click",
    "Rewind",
    "Play",
    "Pause",
    "Stop Playing",
    "Stop all sound",
    "Setup Toolbar",
    "Editing Toolbar",
    "Recording Toolbar",
    "Percussion Tableau",
    "Notation Style",
    "Colorful Line",
    "Traditional Notation",
    "Accidentals",
    "No Accidentals",
    "Appearance",
    "XP (Blue)",
    "3D stylized",
    "Blue Steel",
    "Riveted",
    "Gray Steel",
    "Gunmetal",
    "Win 98",
    "XP (Silver)",
    "Button Styles",
    "Rectangular",
    "Rounded",
    "Hidden",
    "Flat",
    "Round",
    "Tooltext Style",
    "Rectangular Tooltext",
    "Balloon Tooltext",
    "Win 98 Style Tooltext",
    "Tutorial",
    "Help",
});

const HelpLibrary& pages() {
    static const HelpLibrary library(VELMORA_HELP_DIR);
    return library;
}

/// The text with a blank for each end of a line.
std::string joined(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return text;
}
} // namespace

TEST(HelpPagesTest, EveryPageHasATitleOfItsOwnAndText) {
    std::set<std::string> titles;
    for (const auto& page : pages().pages()) {
        EXPECT_NE(page.title, page.name) << "no heading";
        EXPECT_TRUE(titles.insert(page.title).second) << page.name;
        EXPECT_GT(page.plain.size(), 100U) << page.name;
    }
    EXPECT_GE(titles.size(), 14U);
}

TEST(HelpPagesTest, EveryLinkLeadsToAPage) {
    for (const auto& page : pages().pages())
        for (const auto& target : linkTargets(page.markdown))
            EXPECT_NE(pages().find(linkedPage(target)), nullptr) << page.name << " links to " << target;
}

TEST(HelpPagesTest, EveryPageCanBeReachedFromHome) {
    std::set<std::string> reached;
    std::vector<std::string> waiting{std::string(HelpLibrary::kHome)};
    while (!waiting.empty()) {
        const HelpPage* page = pages().find(waiting.back());
        waiting.pop_back();
        if (page == nullptr || !reached.insert(page->name).second)
            continue;
        for (const auto& target : linkTargets(page->markdown))
            waiting.push_back(linkedPage(target));
    }
    EXPECT_EQ(reached.size(), pages().pages().size());
}

TEST(HelpPagesTest, EveryCaptionOfTheMenusIsExplainedSomewhere) {
    for (const auto caption : kCaptions)
        EXPECT_TRUE(std::ranges::any_of(pages().pages(), [caption](const HelpPage& page) {
            return joined(page.markdown).find("**" + std::string(caption) + "**") != std::string::npos;
        })) << caption;
}

TEST(HelpPagesTest, EveryMenuHasItsPageAndWindowsFindTheirs) {
    for (const auto* name : {"start-window", "composing-window", "menu-file", "menu-edit", "menu-tools",
                             "menu-help", "help-window", "playing", "questions", "setup-toolbar"})
        EXPECT_NE(pages().find(name), nullptr) << name;
}

TEST(HelpPagesTest, NoPageSpeaksOfADevelopersMachineOrOfUnfinishedText) {
    for (const auto& page : pages().pages())
        for (const auto* word : {"/tmp", "/root", "/home/", "../", "TODO", "FIXME", "\\", "](http"})
            EXPECT_THAT(page.markdown, Not(HasSubstr(word))) << page.name;
}

TEST(HelpPagesTest, EmphasisIsClosedOnEveryPage) {
    for (const auto& page : pages().pages()) {
        std::size_t marks = 0;
        for (auto at = page.markdown.find("**"); at != std::string::npos;
             at = page.markdown.find("**", at + 2))
            ++marks;
        EXPECT_EQ(marks % 2, 0U) << page.name;
    }
}

TEST(HelpPagesTest, ASearchForACommandLeadsToItsMenu) {
    const auto first = [](std::string_view query) {
        const auto hits = pages().search(query);
        return hits.empty() ? std::string() : hits.front().page->name;
    };
    EXPECT_EQ(first("skin"), "appearance");
    EXPECT_EQ(first("shortcuts"), "keyboard-shortcuts");
    EXPECT_EQ(first("edit menu"), "menu-edit");
    EXPECT_EQ(first("midi"), "opening-and-saving");
    EXPECT_EQ(first("no sound"), "questions");
}
