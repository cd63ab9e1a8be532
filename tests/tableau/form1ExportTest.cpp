// SPDX-License-Identifier: GPL-2.0-or-later
// Exports: the names asked for, the files made beside everything else, and what is told of them.
#include "../sound/TestSound.h"
#include "base/Files.h"
#include "form1Fixture.h"
#include "tableau/ScoreExports.h"

#include <QLabel>

#include <filesystem>
#include <fstream>

using namespace velmora;
namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {
class form1ExportTest : public form1Fixture {
protected:
    form1ExportTest() { environment_.set("VELMORA_SOUNDFONT", testsound::kSoundFont); }

    void choose(const char* item) { menu.item(item).trigger(); }
    void willChoose(const std::string& name) { dialogs.answers.push_back({place(name).string(), 1}); }
    [[nodiscard]] fs::path place(const std::string& name) const { return folders.home() / name; }
    std::string toolText() { return text("toolText"); }
    QWidget* progress() { return window().findChild<QWidget*>("progressWindow"); }
    template<class Condition>
    static bool comes(Condition isSo) {
        return QTest::qWaitFor(isSo, static_cast<int>(20'000 * kPatience));
    }
    /// Some hours of music, which nothing renders within a second.
    void putLongMusic() {
        score().resizeNotes(kMostNotes);
        putNotes(score(), 0, 60, kMostNotes / 2 - 1);
    }

private:
    Environment environment_;
};
} // namespace

TEST_F(form1ExportTest, TheMenuNamesTheExportsBetweenSavingAndClearing) {
    shown();
    QStringList captions;
    for (const QAction* action : menu.popup("mnupopup6").actions())
        captions << (action->isSeparator() ? "-" : action->text().section('\t', 0, 0));
    const auto at = captions.indexOf("Save as");
    EXPECT_EQ(captions.mid(at, 6),
              QStringList({"Save as", "Export as MIDI", "Export as WAV", "Export as MP3", "-", "Clear All"}));
    for (const char* item : {"mnuExportMidi", "mnuExportWav", "mnuExportMp3"})
        EXPECT_TRUE(menu.item(item).isEnabled()) << item;
}

TEST_F(form1ExportTest, AnEmptyScoreAsksNothingAndSaysWhy) {
    shown();
    for (const char* item : {"mnuExportMidi", "mnuExportWav", "mnuExportMp3"})
        choose(item);
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_THAT(toolText(), HasSubstr("There are no notes yet, so there is nothing to export"));
}

TEST_F(form1ExportTest, EachAsksForANameOfItsKindAndACancelDoesNothing) {
    putNotes(score(), 0, 60, 4);
    score().currentFile = place("march.sng");
    shown();
    struct Row {
        const char* item;
        ScriptedDialogs::Asked asked;
    };
    const Row rows[]{
        {"mnuExportMidi", {"save", "Export as MIDI", "MIDI (*.mid)|*.mid", place("march.mid")}},
        {"mnuExportWav", {"save", "Export as WAV", "Wave Audio (*.wav)|*.wav", place("march.wav")}},
        {"mnuExportMp3", {"save", "Export as MP3", "MP3 (*.mp3)|*.mp3", place("march.mp3")}},
    };
    for (const Row& row : rows) {
        choose(row.item);
        ASSERT_FALSE(dialogs.asked.empty());
        EXPECT_EQ(dialogs.asked.back(), row.asked);
    }
    EXPECT_EQ(toolText(), "");
    EXPECT_FALSE(progress());
}

TEST_F(form1ExportTest, AMidiFileIsThereAtOnceAndToldOf) {
    putNotes(score(), 0, 60, 4);
    shown();
    willChoose("tune");
    choose("mnuExportMidi");
    const auto bytes = readWholeFile(place("tune.mid"));
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->starts_with("MThd"));
    EXPECT_THAT(toolText(), HasSubstr("\"tune.mid\" is written: 0:0"));
    EXPECT_EQ(score().currentFile, "") << "the score is still none of that name";
}

TEST_F(form1ExportTest, SoundIsMadeWhileTheScoreChanges) {
    putNotes(score(), 0, 60, 4);
    shown();
    willChoose("tune");
    choose("mnuExportWav");
    window().ClearAll();
    ASSERT_TRUE(comes([this] { return !toolText().empty(); }));
    EXPECT_THAT(toolText(), HasSubstr("\"tune.wav\" is written: 0:0"));
    const auto bytes = readWholeFile(place("tune.wav"));
    ASSERT_TRUE(bytes);
    EXPECT_NE(bytes->find_first_not_of('\0', 44), std::string::npos) << "what was there is heard";
}

TEST_F(form1ExportTest, WhatTakesLongShowsAWindowWhoseCancelLeavesTheOldFile) {
    putLongMusic();
    shown();
    std::ofstream(place("tune.mp3")) << "an old file";
    willChoose("tune.mp3");
    choose("mnuExportMp3");
    ASSERT_TRUE(progress());
    EXPECT_FALSE(progress()->isVisible()) << "not at once";
    ASSERT_TRUE(comes([this] { return progress()->isVisible(); }));
    EXPECT_EQ(progress()->windowTitle(), "Export as MP3");
    QTest::keyClick(progress(), Qt::Key_Escape);
    ASSERT_TRUE(comes([this] { return !toolText().empty(); }));
    EXPECT_EQ(toolText(), "Writing \"tune.mp3\" was cancelled; the file of that name is as it was");
    EXPECT_EQ(readWholeFile(place("tune.mp3")), "an old file");
    EXPECT_FALSE(progress());
}

TEST_F(form1ExportTest, OneFileOfSoundIsMadeAtATimeAndMidiBeside) {
    putLongMusic();
    shown();
    willChoose("tune.wav");
    choose("mnuExportWav");
    choose("mnuExportMp3");
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_THAT(toolText(), HasSubstr("\"tune.wav\" is still being written"));
    willChoose("tune.mid");
    choose("mnuExportMidi");
    EXPECT_TRUE(fs::exists(place("tune.mid")));
}

TEST_F(form1ExportTest, AFailureIsToldInABoxThatNamesTheFile) {
    putNotes(score(), 0, 60, 4);
    shown();
    fs::create_symlink("/dev/full", place("tune.wav"));
    willChoose("tune.wav");
    choose("mnuExportWav");
    std::string words;
    QTimer hand; // the box comes when it comes, in a loop of its own
    QObject::connect(&hand, &QTimer::timeout, [&] {
        if (const QWidget* box = QApplication::activeModalWidget()) {
            words = wordsOf(*box).remove('\n').toStdString();
            pressIn(*box, "ok");
        }
    });
    hand.start(10);
    ASSERT_TRUE(comes([&] { return !words.empty(); }));
    EXPECT_THAT(words, testing::AllOf(HasSubstr("tune.wav"), HasSubstr("No space left on device")));
}

TEST_F(form1ExportTest, LeavingAsksWhetherTheFileIsToBeGivenUp) {
    putLongMusic();
    shown();
    willChoose("tune.wav");
    choose("mnuExportWav");
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(wordsOf(box),
                  "Velmora is still writing \"tune.wav\".\nDo you want to stop that and leave?");
        pressIn(box, "no");
    });
    window().Command3_Click();
    EXPECT_TRUE(window().isVisible());

    driver.in<QWidget>([this](QWidget& box) {
        driver.in<QWidget>([](QWidget& question) { pressIn(question, "no"); }); // whether to save
        pressIn(box, "yes");
    });
    window().Command3_Click();
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(fs::exists(place("tune.wav")));
}
