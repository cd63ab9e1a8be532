// SPDX-License-Identifier: GPL-2.0-or-later
// The same edits in the window and by the headless companion leave the same file.
#include "base/Files.h"
#include "form1Fixture.h"
#include "score/SngFile.h"

#include <QMouseEvent>
#include <QProcess>

#include <random>

using namespace velmora;

namespace {
/// A window with the companion's view: 100 columns.
constexpr int kWidth = 1274;
constexpr std::array kDrawn{0, 1, 3, 7, 8, 10, 12};

class form1AgainstCompanionTest : public form1Fixture, public testing::WithParamInterface<int> {
protected:
    form1AgainstCompanionTest() { random_.seed(static_cast<unsigned>(GetParam())); }
    int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }

    void press(int channel, Qt::MouseButton button, QPoint from, QPoint to) {
        QWidget& box = child(channel < kMelodyChannels ? "MusicBox" : "Beatbox");
        const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButton changed, Qt::MouseButtons down) {
            QMouseEvent event(type, at, box.mapToGlobal(QPointF(at)), changed, down, Qt::NoModifier);
            QApplication::sendEvent(&box, &event);
        };
        send(QEvent::MouseButtonPress, from, button, button);
        if (button == Qt::LeftButton)
            send(QEvent::MouseMove, to, Qt::NoButton, button);
        send(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
    }
    QPoint cell(int channel, int position, int row) {
        const ViewState& view = workspace().view;
        const int height = channel < kMelodyChannels ? view.Line_Height : kBeatRowHeight;
        return {position * kColumnWidth + 6, (row - view.ViewTopRow) * height + height / 2};
    }
    void pressOnIndicator(Qt::MouseButton button, int column) {
        QWidget& bar = child("Pic2a");
        QTest::mousePress(&bar, button, {}, QPoint(column * kColumnWidth + 6, 10));
        QTest::mouseRelease(&bar, button, {}, QPoint(column * kColumnWidth + 6, 10));
    }
    void drawMode() { workspace().view.MouseMode = Mouse::Draw; }

    /// One random edit, done in the window; what the companion is told comes back.
    std::string edit() {
        ViewState& view = workspace().view;
        const auto words = [](std::string text, std::initializer_list<int> numbers) {
            for (const int number : numbers)
                text.append(" ").append(std::to_string(number));
            return text;
        };
        const int channel = kDrawn[static_cast<std::size_t>(upTo(kDrawn.size() - 1))];
        const int row = channel < kMelodyChannels ? 43 + upTo(30) : 42 + upTo(3);
        const int first = upTo(90);
        const int last = std::min(97, first + upTo(7));
        switch (upTo(17)) {
        case 0:
        case 1:
        case 2:
        case 3:
            window().TrackSel_Click(channel);
            drawMode();
            press(channel, Qt::LeftButton, cell(channel, first, row), cell(channel, last, row));
            return words("stroke", {channel, row, first, last});
        case 4:
            window().TrackSel_Click(channel);
            drawMode();
            press(channel, Qt::RightButton, cell(channel, first, row), cell(channel, first, row));
            return words("erase", {channel, first, row});
        case 5:
            window().Cmd2_Click(12);
            return "cut";
        case 6: {
            window().setMouseMode(Mouse::Select);
            press(0, Qt::LeftButton, cell(0, first, 60), cell(0, last, 60));
            EXPECT_EQ(view.SelectStart, first);
            EXPECT_EQ(view.SelectEnd, last);
            return words("select", {first, last});
        }
        case 7:
            window().setMouseMode(Mouse::Cursor);
            press(0, Qt::LeftButton, cell(0, first, 60), cell(0, first, 60));
            return words("mark", {first});
        case 8:
            window().Cmd2_Click(11);
            return "copy";
        case 9:
            window().Cmd2_Click(13);
            return "paste-overwrite";
        case 10:
            window().Cmd2_Click(14);
            return "paste-insert";
        case 11:
            workspace().edit.Txtspc = static_cast<std::int16_t>(upTo(6));
            window().Cmd2_Click(15);
            return words("insert", {workspace().edit.Txtspc});
        case 12:
            if (workspace().undoStep() == "Open Score File") // the companion has opened over nothing
                return words("channel", {score().ActiveChannel});
            window().OpenforUndo();
            return "undo";
        case 13:
            window().Cmd2_Click(16);
            return "duplicate";
        case 14:
            if (channel >= kMelodyChannels)
                return words("channel", {score().ActiveChannel});
            window().TrackSel_Click(channel);
            drawMode();
            workspace().view.NoteEffectsOn = true;
            press(channel, Qt::RightButton, cell(channel, first, row), cell(channel, first, row));
            workspace().view.NoteEffectsOn = false;
            return words("apply", {channel, first, row});
        case 15: {
            EffectSelectors& chosen = workspace().effects;
            chosen.vol3 = static_cast<std::int16_t>(upTo(127));
            chosen.T2 = static_cast<std::int16_t>(upTo(127) - 64);
            chosen.T1 = chosen.T3 = chosen.T4 = static_cast<std::int16_t>(upTo(127));
            window().TrackSel_Click(channel);
            pressOnIndicator(Qt::RightButton, first);
            return words("indicator",
                         {channel, first, chosen.vol3, chosen.T1, chosen.T2, chosen.T3, chosen.T4});
        }
        case 16:
            window().TrackSel_Click(channel);
            pressOnIndicator(Qt::LeftButton, first);
            return words("look", {channel, first});
        default:
            workspace().edit.txtStart = static_cast<std::int16_t>(1 + upTo(20));
            window().Cmdo_Click();
            return words("create", {workspace().edit.txtStart});
        }
    }

private:
    std::mt19937 random_;
};
INSTANTIATE_TEST_SUITE_P(Seeds, form1AgainstCompanionTest, testing::Range(1, 13));
} // namespace

TEST_P(form1AgainstCompanionTest, BothLeaveTheSameFile) {
    const std::string before = (folders.home() / "before.sng").string();
    const std::string told = (folders.home() / "told.sng").string();
    putNotes(score(), 0, 60, 4, 3);
    score().currentFile = before;
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");
    window().resize(kWidth, 768);
    shown().openScore(before);
    ASSERT_EQ(workspace().view.ViewColumns, 99);

    workspace().edit.ChannelPicked.fill(false);
    for (const int channel : {0, 1, 8})
        workspace().edit.ChannelPicked[channel] = true;
    workspace().edit.CycleNotes = 5;
    workspace().edit.CycleBeats = 7;
    workspace().edit.TotalNotes = 40;
    QStringList words{
        "edit",       "--classic",   QString::fromStdString(before), QString::fromStdString(told),
        "pick 0,1,8", "cycle 5 7 40"};
    if (GetParam() % 2 == 0) {
        words.removeAt(1);
        workspace().setManners(Manners::careful());
    }
    for (int step = 0; step < 40; ++step)
        words << QString::fromStdString(edit());
    score().currentFile = (folders.home() / "window.sng").string();
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");

    QProcess companion;
    companion.start(VELMORA_CLI, words);
    ASSERT_TRUE(companion.waitForFinished(30000));
    ASSERT_EQ(companion.exitCode(), 0) << companion.readAllStandardError().constData();
    EXPECT_EQ(readWholeFile(folders.home() / "window.sng"), readWholeFile(told))
        << words.join("\" \"").toStdString();
}
