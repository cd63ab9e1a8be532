// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "synth/KeepWindow.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
struct Beats {
    double from;
    double length;
    int note;
};
/// Sixteenths as they were meant, and how a hand was beside them.
constexpr std::array kTune{Beats{0.2, 3.1, 64},  Beats{3.65, 1.4, 66}, Beats{6.3, 1.5, 67},
                           Beats{8.1, 4.8, 66},  Beats{13.8, 1.3, 64}, Beats{16.2, 3.2, 71},
                           Beats{20.4, 1.5, 69}, Beats{21.7, 1.4, 67}, Beats{24.1, 4.9, 67},
                           Beats{29.9, 1.4, 66}, Beats{32.3, 2.2, 64}, Beats{34.8, 0.8, 66},
                           Beats{36.2, 1.5, 67}};
constexpr double kSixteenth = 0.15625;

void expectGolden(int skin, int scale, bool polyphonic) {
    GoldenProgram program(skin);
    program.loop.block(1);
    for (const Beats& note : kTune) {
        program.loop.serveUntil(1 + note.from * kSixteenth);
        program.played.struck(0, note.note, 100, 24, program.loop.now());
        if (polyphonic)
            program.played.struck(0, note.note - 12, 100, 24, program.loop.now());
        program.loop.block(note.length * kSixteenth);
        program.played.ended(0, note.note, program.loop.now());
        program.played.ended(0, note.note - 12, program.loop.now());
    }
    if (polyphonic)
        program.score().NoteCell.set(0, 4, 60); // makes room
    KeepWindow window(program.desk(), nullptr);
    if (!polyphonic)
        window.changeGrid(1);
    window.show();
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("keep%1-skin%2-x%3")
                             .arg(QLatin1String(polyphonic ? "-chords" : ""))
                             .arg(skin)
                             .arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}
} // namespace

class KeepInSomeSkins : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, KeepInSomeSkins, testing::Values(1, 6, 7));

TEST_P(KeepInSomeSkins, KeepWhatIJustPlayedLooksAsKept) {
    expectGolden(GetParam(), 1, false);
}

TEST(KeepGoldenTest, ItIsSharpAtTwiceTheScale) {
    expectGolden(1, 2, false);
}

TEST(KeepGoldenTest, ChordsTakeTheColoursOfTheirChannels) {
    expectGolden(1, 1, true);
}
