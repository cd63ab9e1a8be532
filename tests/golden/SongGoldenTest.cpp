// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "notation/SongDocument.h"
#include "songwriter/MDIScore.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr int kTextTab = 1;
constexpr int kChannelsTab = 3;
constexpr int kNotesTab = 4;
constexpr int kScoreTab = 5;

/// The frame with two pages to write on by hand, of which the first has a text.
void expectFrame(const char* kind, int tab, int skin, int scale) {
    GoldenProgram program(skin);
    program.score().currentFile = "/home/user/Songs/Morning Walk.sng";
    program.windows.present = {Windows::Name::frmsynth, Windows::Name::fPrint};
    notation::SongDocument& song = program.song();
    song.setup.title = "Morning Walk";
    song.setup.key = 2;
    song.setup.staves.chkChannel = {true, false, true};
    song.setup.staves.ChkNotetype = {false, false, true};
    MDIScore window(program.desk());
    window.resize(1024, 600);
    window.AddPage();
    window.AddPage();
    notation::LyricsItem text;
    text.left = 120;
    text.top = 190;
    text.text = "words on the page";
    song.place(std::move(text));
    window.open();
    window.Lmnu_Click(tab);
    program.menu.popup("mnuTextSW").close();
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("MDIScore-%1-skin%2-x%3").arg(kind).arg(skin).arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}
} // namespace

class SongwriterInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, SongwriterInEverySkin, testing::Range(1, 9));

TEST_P(SongwriterInEverySkin, TheFrameLooksAsKept) {
    expectFrame("score", kScoreTab, GetParam(), 1);
}

TEST(SongGoldenTest, EachPanelLooksAsKept) {
    expectFrame("text", kTextTab, 1, 1);
    expectFrame("channels", kChannelsTab, 1, 1);
    expectFrame("notes", kNotesTab, 1, 1);
    expectFrame("channels", kChannelsTab, 6, 1);
}

TEST(SongGoldenTest, TheFrameOnALargeScreenLooksAsKept) {
    expectFrame("score", kScoreTab, 1, 2);
    expectFrame("text", kTextTab, 4, 2);
}
