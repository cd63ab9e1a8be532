// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "recording/Record.h"
#include "recording/Waveform.h"
#include "studio/TestWaves.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
namespace fs = std::filesystem;

/// Three swells and the quiet between them, in whole numbers: alike on each machine.
fs::path writeTake(const fs::path& file) {
    constexpr std::size_t kRate = 44'100;
    constexpr std::size_t kSwell = 4 * kRate;
    std::vector<std::int16_t> values = testwaves::noise(12 * kRate, 5);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t at = i / 2 % kSwell;
        const auto loud = static_cast<int>(std::min(at, kSwell - at) * 1000 / kSwell); // 0 to 500
        values[i] = static_cast<std::int16_t>(values[i] * loud / 600);
    }
    std::ofstream(file, std::ios::binary) << testwaves::wavOf(values);
    return file;
}

/// A take of which the ends are parted off.
void expectTake(int skin, int scale) {
    GoldenProgram program(skin);
    SessionState& state = program.studio().state;
    state.Text6 = writeTake(fs::path(program.home.path().toStdString()) / "Morning Walk.wav").string();
    state.title = "Morning Walk";
    state.artist = "Anna Bell";
    Record window(program.desk(), nullptr);
    window.open();
    window.findChild<QAbstractButton*>("showTake")->click();
    const auto& loudness = *window.findChild<QLabel*>("takeLoudness");
    ASSERT_TRUE(QTest::qWaitFor([&] { return loudness.text().startsWith("Peak"); }));
    auto& wave = *static_cast<Waveform*>(window.findChild<QWidget*>("waveform"));
    wave.setMarks(0.1, 0.7);
    wave.onMarks();
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("TheTake-skin%1-x%2").arg(skin).arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}
} // namespace

class TakeInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, TakeInEverySkin, testing::Range(1, 9));

TEST_P(TakeInEverySkin, TheTakeLooksAsKept) {
    expectTake(GetParam(), 1);
}

TEST(TakeGoldenTest, TheTakeOnALargeScreenLooksAsKept) {
    expectTake(1, 2);
    expectTake(4, 2);
}
