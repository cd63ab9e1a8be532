// SPDX-License-Identifier: GPL-2.0-or-later
// Schemes and takes, and the files they go to.
#include "SynthFixture.h"
#include "score/SngFile.h"

#include <QAction>
#include <QMenu>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {
class frmsynthFilesTest : public SynthFixture {
protected:
    fs::path file(const char* name) { return folders.home() / name; }
    void write(const char* name, const std::string& text) {
        std::ofstream(file(name), std::ios::binary) << text;
    }
    static std::string read(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    void answer(const fs::path& path) { dialogs.answers.push_back({path.string(), 1}); }
    void recordANote() {
        window().CmdRec_Click();
        down(kZ);
        pass(0.3);
        up(kZ);
        window().CmdRec_Click();
    }
};
} // namespace

TEST_F(frmsynthFilesTest, AnOpenedSchemeIsOnTheKeysAndItsNameOnThePage) {
    opened(1);
    write("mine.key", "A\r\nB\r\nC\r\n");
    answer(file("mine.key"));
    click(control("Command1"));
    EXPECT_EQ(dialogs.asked.front().title, "Open keyboard scheme");
    EXPECT_EQ(dialogs.asked.front().filters, "Keys(*.key)|*.key");
    EXPECT_EQ(shownIn("Label3"), "mine.key");
    EXPECT_EQ(window().keyboard().scheme().labels[0], "A");
    EXPECT_EQ(window().keyboard().scheme().labels[43], "C") << "a short file's last line counts on";
    EXPECT_EQ(control("CmdKey", 1).accessibleName(), "Key C sharp 2, plays with B");
    window().close();
    EXPECT_EQ(stored("keyfile"), file("mine.key").string());
    opened(1);
    EXPECT_EQ(shownIn("Label3"), "mine.key");
}

TEST_F(frmsynthFilesTest, TheSettingsBringItBackAtTheNextStart) {
    write("mine.key", "A\nB\nC\n");
    store("keyfile", file("mine.key").string());
    opened(1);
    EXPECT_EQ(shownIn("Label3"), "mine.key");
    EXPECT_EQ(window().keyboard().scheme().labels[1], "B");
}

TEST_F(frmsynthFilesTest, TheNextDialogOpensWhereTheLastFileWas) {
    opened();
    fs::create_directories(file("far/away"));
    write("far/away/x.key", "A");
    answer(file("far/away/x.key"));
    click(button(1));
    click(button(2));
    EXPECT_EQ(dialogs.asked.back().kind, "save");
    EXPECT_EQ(dialogs.asked.back().title, "Save keyboard scheme");
    EXPECT_EQ(dialogs.asked.back().start, file("far/away").string());
}

TEST_F(frmsynthFilesTest, ANameThatLeadsNowhereAndACancelChangeNothingAndSayNothing) {
    opened();
    answer(file("missing.key"));
    click(button(1));
    click(button(1));
    EXPECT_EQ(window().keyboard().scheme(), KeyScheme::builtIn());
    EXPECT_EQ(shownIn("Label3"), "keyboard.key");
}

TEST_F(frmsynthFilesTest, ASchemeThatCanNotBeReadIsSaidInWords) {
    opened();
    fs::create_directories(file("folder.key"));
    answer(file("folder.key"));
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_THAT(wordsOf(box).toStdString(), HasSubstr("folder.key"));
        pressIn(box, "ok");
    });
    click(button(1));
    EXPECT_EQ(window().keyboard().scheme(), KeyScheme::builtIn());
}

TEST_F(frmsynthFilesTest, AnEditedLabelIsOnTheLineOfItsKeyOnceSaved) {
    opened(1);
    window().CmdEd_Click();
    auto& label = control<QLineEdit>("NoteX", 3);
    click(label);
    QTest::keyClicks(&label, "#");
    answer(file("mine"));
    click(control("Command6"));
    const std::string text = read(file("mine.key"));
    EXPECT_EQ(text.substr(0, 12), "Z\r\nS\r\nX\r\n#\r\n");
    EXPECT_EQ(shownIn("Label3"), "mine.key");
}

TEST_F(frmsynthFilesTest, ASchemeThatCanNotBeWrittenIsSaidInWords) {
    opened();
    answer("/proc/mine.key");
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_FALSE(wordsOf(box).isEmpty());
        pressIn(box, "ok");
    });
    click(button(2));
    EXPECT_EQ(shownIn("Label3"), "keyboard.key");
}

TEST_F(frmsynthFilesTest, ATakeIsSavedAsAScoreOnce) {
    opened();
    recordANote();
    answer(file("tune"));
    click(button(5));
    EXPECT_EQ(dialogs.asked.back().title, "Save As SNG score");
    EXPECT_EQ(dialogs.asked.back().filters, "SNG(*.sng)|*.sng");
    EXPECT_THAT(read(file("tune.sng")), HasSubstr("Polyphonics"));
    EXPECT_EQ(window().keyboard().take.size(), 0);
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(wordsOf(box), "Nothing to save");
        pressIn(box, "ok");
    });
    click(button(5));
    EXPECT_EQ(dialogs.asked.size(), 1U);
}

TEST_F(frmsynthFilesTest, ATakeThatCanNotBeWrittenStays) {
    opened();
    recordANote();
    const Take before = window().keyboard().take;
    answer("/proc/tune.sng");
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_FALSE(wordsOf(box).isEmpty());
        pressIn(box, "ok");
    });
    click(button(5));
    EXPECT_EQ(window().keyboard().take, before);
}

TEST_F(frmsynthFilesTest, ACancelKeepsTheTake) {
    opened();
    recordANote();
    click(button(5));
    EXPECT_GT(window().keyboard().take.size(), 2);
}

namespace {
/// Chooses an entry of the menu that is open by then.
void chooseInMenu(const char* entry) {
    QTimer::singleShot(0, [entry] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        for (QAction* action : menu->actions())
            if (action->text() == QLatin1String(entry)) {
                menu->setActiveAction(action);
                QTest::keyClick(menu, Qt::Key_Return);
                return;
            }
        ADD_FAILURE() << entry;
        menu->close();
    });
}
} // namespace

TEST_F(frmsynthFilesTest, InCarefulMannersTheNotesThemselvesCanBeSaved) {
    beCareful();
    opened();
    recordANote();
    answer(file("trace"));
    chooseInMenu("Classic trace");
    click(button(5));
    EXPECT_TRUE(fs::exists(file("trace.sng")));
    recordANote();
    answer(file("notes"));
    chooseInMenu("Notes as I played them");
    click(button(5));
    ASSERT_TRUE(fs::exists(file("notes.sng")));
    EXPECT_EQ(window().keyboard().take.size(), 0) << "a take is saved once";
    OpenPoliFile(file("notes.sng"), score(), workspace().setup);
    EXPECT_EQ(score().NoteCell.at(0, 0), std::optional<std::int16_t>(91));
}

TEST_F(frmsynthFilesTest, InCarefulMannersWhatTheMousePlayedCanBeSavedAsNotes) {
    beCareful();
    opened();
    click(button(4));
    window().keyboard().CmdKey_MouseDown(12);
    pass(0.5);
    window().keyboard().CmdKey_MouseUp();
    click(button(4));
    answer(file("mouse"));
    click(button(5));
    EXPECT_TRUE(fs::exists(file("mouse.sng")));
}

TEST_F(frmsynthFilesTest, NotesAsPlayedAreThoseOfTheTake) {
    beCareful();
    opened();
    played.struck(0, 90, 100, 0, loop.now()); // before the take
    played.ended(0, 90, loop.now());
    pass(1);
    recordANote();
    pass(1);
    played.struck(0, 91, 100, 0, loop.now()); // after it
    played.ended(0, 91, loop.now());
    answer(file("notes"));
    chooseInMenu("Notes as I played them");
    click(button(5));
    // Key 0 is MIDI note 36, which stands on row 91.
    EXPECT_THAT(read(file("notes.sng")), testing::StartsWith("91,1091"));
    EXPECT_THAT(read(file("notes.sng")), HasSubstr("Tempo="));
    EXPECT_EQ(window().keyboard().take.size(), 0) << "a take is saved once";
}

TEST_F(frmsynthFilesTest, InClassicMannersTheTraceAloneIsSaved) {
    opened();
    recordANote();
    answer(file("trace"));
    click(button(5));
    EXPECT_TRUE(fs::exists(file("trace.sng")));
}
