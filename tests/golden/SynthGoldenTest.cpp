// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "sound/ShortMessage.h"
#include "synth/frmsynth.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr std::array kPageNames{"setup", "compose", "sound1", "sound2"};

/// The window as somebody plays a chord and the metronome beats.
void expectPage(int skin, int scale, int page, QSize size, const char* kind = "") {
    GoldenProgram program(skin);
    frmsynth window(program.desk(), nullptr);
    window.open();
    window.resize(size);
    window.Lmnu_Click(page);
    Keyboard& keyboard = window.keyboard();
    keyboard.set(KeyboardSlider::Reverb, 40);
    keyboard.set(KeyboardSlider::Chorus, 12);
    keyboard.set(KeyboardSlider::Chord, 7);
    keyboard.setLoop(true);
    keyboard.chkRunning_Click(true);
    program.loop.serveUntil(program.loop.now() + 1);
    window.runDue();
    announce(program.workspace(), Change::Manners);
    for (const int note : {60, 64, 67, 70})
        keyboard.midi(1, shortmessage::noteOn(0, note, 90));
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("frmsynth-%1%2-skin%3-x%4")
                             .arg(kPageNames[static_cast<std::size_t>(page - 1)], kind)
                             .arg(skin)
                             .arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}
constexpr QSize kUsual(1160, 396);
constexpr QSize kSmall(1000, 380);
} // namespace

class SynthInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, SynthInEverySkin, testing::Range(1, 9));

TEST_P(SynthInEverySkin, TheKeyboardLooksAsKept) {
    expectPage(GetParam(), 1, 4, kUsual);
}

TEST(SynthGoldenTest, ThePagesOfTheKeyboardLookAsKept) {
    for (const int page : {1, 2, 3})
        expectPage(1, 1, page, kUsual);
}

TEST(SynthGoldenTest, TheSmallestKeyboardLooksAsKept) {
    for (const int page : {1, 2, 3, 4})
        expectPage(6, 1, page, kSmall, "-small");
}

TEST(SynthGoldenTest, TheKeyboardOnALargeScreenLooksAsKept) {
    expectPage(1, 2, 4, kUsual);
    expectPage(4, 2, 3, kUsual);
}
