// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "recording/LevelBars.h"
#include "recording/Record.h"
#include "recording/frmLog.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
void expectPicture(QWidget& window, const char* kind, int skin, int scale) {
    const QString name = QStringLiteral("%1-skin%2-x%3").arg(kind).arg(skin).arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(window, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}

/// A score is being recorded.
void showRecording(Record& window, Studio& studio, Score& score) {
    score.currentFile = "/home/user/Songs/Morning Walk.sng";
    SessionState& state = studio.state;
    state.isRecording = state.isLocked = true;
    state.Label8 = "Recording";
    state.Status = "63 %";
    state.share = 0.63;
    state.lblTime = "00:42";
    state.Text6 = "40213.wav";
    state.Erbox = "Recording source is 'Notes'...\nRecording to a Temp file: 40213.wav\nRecording\n"
                  "  Started playing notes\n";
    window.sessionChanged();
    QCoreApplication::processEvents();
    static_cast<LevelBars*>(window.findChild<QWidget*>("levels"))
        ->showLevels({.peak = {0.5F, 0.3F}, .held = {0.9F, 0.6F}, .clipped = {true, false}});
}

void expectRecord(int skin, int scale, bool records) {
    GoldenProgram program(skin);
    program.windows.present.insert(Windows::Name::CDWriter);
    Record window(program.desk(), nullptr);
    window.open();
    if (records)
        showRecording(window, program.studio(), program.score());
    expectPicture(window, records ? "Record-recording" : "Record", skin, scale);
}
} // namespace

class RecordInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, RecordInEverySkin, testing::Range(1, 9));

TEST_P(RecordInEverySkin, TheRecordingStudioLooksAsKept) {
    expectRecord(GetParam(), 1, true);
}

TEST(RecordGoldenTest, TheRecordingStudioAtRestLooksAsKept) {
    expectRecord(1, 1, false);
    expectRecord(6, 1, false);
}

TEST(RecordGoldenTest, TheRecordingStudioOnALargeScreenLooksAsKept) {
    expectRecord(1, 2, true);
    expectRecord(4, 2, true);
}

TEST(RecordGoldenTest, TheLogLooksAsKept) {
    GoldenProgram program(1);
    program.studio().state.Text2 = "10:15:02  Recording source is 'Notes'...\n10:15:02  Recording\n";
    frmLog window(program.desk(), nullptr);
    window.refresh();
    expectPicture(window, "frmLog", 1, 1);
}
