// SPDX-License-Identifier: GPL-2.0-or-later
// What stands where, what is bound, and that button, menu and key reach one routine.
#include "form1Fixture.h"
#include "tableau/Commands.h"

#include <QLabel>

#include <set>

using namespace velmora;

namespace {
using form1CommandsTest = form1Fixture;

/// The commands that a routine is bound to, by index.
const std::set<int> kBoundCmd2{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
const std::set<int> kBoundLb1{
    0,  1,  6,  8,  9,  10, 11, 13, 14, 15, 16, 17,
    18, 19, 20, 21, 22, 24, 25, 26, 27, 28, 29, 30}; // 12 with style 11, 4 and 23 after an edit

/// Everything that a command may change or ask, in words.
class Deed {
public:
    template<class Value>
    Deed& operator()(const char* name, const Value& value) {
        words_ << name << ' ' << value << '\n';
        return *this;
    }
    [[nodiscard]] std::string words() const { return words_.str(); }

private:
    std::ostringstream words_;
};

struct WayRow {
    const char* name;
    const char* array; ///< of the button; null where none stands for it
    int index;
    const char* item; ///< of a menu; null where none stands for it
    const char* key;  ///< blank for none
};
constexpr WayRow kWays[]{
    {"Clear", "Cmd2", 0, "mnuNew", "Ctrl+N"},
    {"ClearOnPanel", "Lb1", 0, "mnuNew", "Ctrl+N"},
    {"Open", "Cmd2", 1, "mnuOpen", "Ctrl+O"},
    {"SaveAs", "Cmd2", 2, "mnuSaveAs2", "Ctrl+Shift+S"},
    {"Save", "Cmd2", 2, "mnuSave2", "Ctrl+S"},
    {"Play", "Cmd2", 3, "mnuPlay", "Space"},
    {"Stop", "Cmd2", 6, "mnuStopPlaying", ""},
    {"Rewind", "Cmd2", 7, "mnuRewind", "Home"},
    {"Undo", "Lb1", 4, "undo", "Ctrl+Z"},
    {"StopAllSound", "Lb1", 6, "mnuStopall", ""},
    {"Help", "Lb1", 8, nullptr, "F1"},
    {"Percussion", "Lb1", 9, "mnuPercussion", ""},
    {"Colourful", "Lb1", 10, "mnuNotestyle1", ""},
    {"Traditional", "Lb1", 11, "mnuNotestyle2", ""},
    {"Menu", "Lb1", 14, "mnuMenu", ""},
    {"Erase", "Lb1", 13, "mnuerase", ""},
    {"Tips", "Lb1", 15, "mnuTips", ""},
    {"EditingToolbar", "Lb1", 16, "mnuEdit", ""},
    {"Exit", nullptr, 0, "mnuExit", "Ctrl+Q"},
};

enum class By { Button, Item, Key };

/// A window of its own for one press.
class Stage : public form1Fixture {
public:
    explicit Stage(const WayRow& way) : way_(way) {
        putNotes(score(), 0, 60, 2);
        workspace().view.PlayMark = 7;
        const std::string_view name = way.name;
        if (name == "Undo")
            workspace().clear();
        if (name == "Exit")
            score().ClearAll(); // no question
        if (name == "Erase")
            workspace().view.RightClickMode = RightClick::Menu;
        if (name == "Stop")
            workspace().play.Playing = true;
        if (name == "Colourful")
            store("Notationstyle", "1");
        shown();
    }
    void press(By by) {
        if (by == By::Key) {
            const QKeyCombination key = QKeySequence(way_.key)[0];
            QTest::keyClick(&window(), key.key(), key.keyboardModifiers());
        } else if (by == By::Item) {
            menu.item(way_.item).trigger();
        } else if (way_.array) {
            QTest::mouseClick(&button(way_.array, way_.index), Qt::LeftButton);
        } else {
            QTest::mouseClick(&child("imgTitleClose"), Qt::LeftButton);
        }
    }
    std::string deed() {
        const Workspace& space = workspace();
        Deed deed;
        deed("notes", space.score.SongEnd)("active", space.score.ActiveChannel)("quits", windows.quits);
        deed("playing", space.play.Playing)("mark", space.view.PlayMark)("waits", loop.waits);
        deed("mode", static_cast<int>(space.view.RightClickMode))("open", window().isVisible());
        for (const auto& [key, value] : settings.values)
            deed(key.second.c_str(), value);
        for (const auto& asked : dialogs.asked)
            deed(asked.kind.c_str(), asked.title);
        for (const std::uint32_t word : port.words())
            deed("sent", word);
        for (const std::string& page : windows.pages)
            deed("page", page);
        return deed.words();
    }

private:
    void TestBody() override {}

    WayRow way_;
};

/// What changed by the press; a press that does nothing fails.
std::string deedOf(const WayRow& way, By by) {
    Stage stage(way);
    const std::string before = stage.deed();
    stage.press(by);
    std::string after = stage.deed();
    EXPECT_NE(after, before) << way.name << " does nothing";
    return after;
}

class EveryCommand : public testing::TestWithParam<WayRow> {};
INSTANTIATE_TEST_SUITE_P(Ways, EveryCommand, testing::ValuesIn(kWays),
                         [](const auto& row) { return std::string(row.param.name); });
} // namespace

TEST_F(form1CommandsTest, EveryIndexHasOneVisiblePlace) {
    shown();
    std::set<int> seen;
    for (const auto& [array, count] : {std::pair{"Cmd2", 17}, std::pair{"Lb1", 31}}) {
        for (int index = 0; index < count; ++index) {
            if (std::string_view(array) == "Lb1") {
                const CommandPlace place = kLb1[static_cast<std::size_t>(index)].place;
                window().Lb1_Click(place == CommandPlace::Maker     ? 17
                                   : place == CommandPlace::Effects ? 18
                                                                    : 19);
            }
            const CommandButton& one = button(array, index); // throws unless there is exactly one
            EXPECT_TRUE(one.isVisible()) << array << index;
            const QRect place(one.mapTo(&window(), QPoint()), one.size());
            EXPECT_TRUE(window().rect().contains(place)) << array << index;
            EXPECT_GE(place.width(), 20) << array << index;
            EXPECT_EQ(window().childAt(place.center()), &one) << array << index << " is covered";
        }
    }
}

TEST_F(form1CommandsTest, BoundCommandsAreEnabledAndTheOthersDisabled) {
    window();
    for (int index = 0; index < 17; ++index)
        EXPECT_EQ(button("Cmd2", index).isEnabled(), kBoundCmd2.contains(index)) << "Cmd2 " << index;
    for (int index = 0; index < 31; ++index)
        EXPECT_EQ(button("Lb1", index).isEnabled(), kBoundLb1.contains(index)) << "Lb1 " << index;
}

TEST_F(form1CommandsTest, MenuItemsWithoutARoutineAreDisabled) {
    window();
    const std::set<std::string_view> bound{
        // "undo" once there is something to undo
        "mnuOpen",       "mnuExportMidi",  "mnuExportWav",
        "mnuExportMp3",  "mnuSave2",       "mnuSaveAs2",
        "mnuNew",        "mnuExit",        "mnuCut",
        "mnuCopy",       "mnuPasteInsert", "mnuPasteoverwrite",
        "mnuerase",      "mnuMenu",        "mnuTips",
        "mnuRewind",     "mnuPlay",        "mnupause",
        "mnuStopall",    "mnuEdit",        "mnuStopPlaying",
        "mnuPercussion", "mnuNotestyle1",  "mnuNotestyle2",
        "mnuHelpfile",   "mnuSetup",       "mnuXPtooltext",
        "mnuSkin",       "mnuButton",      "mnuClassic",
        "mnuStepEntry",  "keepPlayed"}; // accidentals go with style 2 alone
    for (const MenuRow& row : menuRows()) {
        if (row.kind == MenuRow::Kind::Separator || row.kind == MenuRow::Kind::Submenu)
            continue;
        EXPECT_EQ(menu.item(row.name, row.index).isEnabled(), bound.contains(row.name)) << row.name;
    }
}

TEST_P(EveryCommand, DoesTheSameByButtonMenuAndKey) {
    const std::string byButton = deedOf(GetParam(), By::Button);
    if (GetParam().item) {
        EXPECT_EQ(deedOf(GetParam(), By::Item), byButton);
    }
    if (*GetParam().key) {
        EXPECT_EQ(deedOf(GetParam(), By::Key), byButton);
    }
}

TEST_F(form1CommandsTest, WindowsThatAreStillToComeSaySoInTheirTips) {
    shown();
    for (const int index : {2, 3, 5, 7}) { // the keyboard, the studio, the songwriter, the tutorial
        EXPECT_FALSE(button("Lb1", index).isEnabled()) << index;
        EXPECT_TRUE(tips.toolTip(button("Lb1", index))->text.endsWith("Comes in a later version")) << index;
    }
    EXPECT_EQ(menu.item("mnuTutorial").toolTip(), "Comes in a later version");
    EXPECT_EQ(tips.toolTip(button("Lb1", 1))->text, "Channels, instruments, sound, tempo and MIDI device");
}
