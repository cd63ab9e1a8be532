// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "notation/SongDocument.h"
#include "songwriter/fPrint.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QtTest>

#include <gmock/gmock.h>

using namespace velmora;

namespace {

/// Steps of a scale up and down, with a bass in half notes.
void putTune(Score& score) {
    constexpr int kPositions = 192;
    for (int position = 0; position < kPositions; ++position) {
        const int row = 66 - (position / 4 * 5) % 13;
        score.NoteCell.set(0, position, static_cast<std::int16_t>(position % 4 == 0 ? row : row + 1000));
        const int bass = 87 - position / 8 % 5 * 2;
        score.NoteCell.set(1, position, static_cast<std::int16_t>(position % 8 == 0 ? bass : bass + 1000));
    }
    score.ChannelInUse[0] = score.ChannelInUse[1] = true;
    score.FindEndOfSong();
}

/// The print window with a page and a printer, on one of its tabs.
void expectPrint(const char* kind, const char* tab, int skin, int scale) {
    GoldenProgram program(skin);
    putTune(program.score());
    notation::SongDocument& song = program.song();
    song.setup.title = "Morning Walk";
    ASSERT_TRUE(song.WriteFromNotes().done);
    notation::PrintSystem system;
    system.printers = [](std::string& /*problem*/) {
        return std::vector<notation::Printer>{
            {"Office printer",
             true,
             {{"media", "iso_a4_210x297mm"}, {"printer-resolution", "600dpi"}},
             {300, 600}}};
    };
    fPrint window(
        program.desk(), nullptr,
        [&song] {
            return notation::PrintedScore{.pages = song.sheets().engraved(), .title = song.setup.title};
        },
        system);
    window.open(Windows::Focus::Leave);
    const auto& printers = *window.findChild<QComboBox*>("cbPrinters");
    ASSERT_TRUE(QTest::qWaitFor([&] { return printers.count() == 2; }));
    window.findChild<QAbstractButton*>(tab)->click();
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("fPrint-%1-skin%2-x%3").arg(kind).arg(skin).arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}
} // namespace

class PrintInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, PrintInEverySkin, testing::Range(1, 9));

TEST_P(PrintInEverySkin, ThePrintWindowLooksAsKept) {
    expectPrint("print", "SSTab1Print", GetParam(), 1);
}

TEST(PrintGoldenTest, TheSizeOfTheImageLooksAsKept) {
    for (const int skin : {1, 6})
        expectPrint("image", "SSTab1Image", skin, 1);
}

TEST(PrintGoldenTest, ThePrintWindowOnALargeScreenLooksAsKept) {
    for (const int skin : {1, 4})
        expectPrint("print", "SSTab1Print", skin, 2);
}
