// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_composing_probe WHAT [NUMBER [TEMPO [classic]]]: the composing window with a score, on the X server
// that is there; prints three numbers.
//
// clang-format off
//   press    microseconds at the median from a press of the mouse to its note-on at the port, of a step of a
//            drag, and of the release: events of Qt's
//   hand     the same press made at the X server: at the median, at the 99th of a hundred, at worst
//   open     milliseconds from the command to the painted window with a score of NUMBER positions, at the
//            median: of opening, of clearing and of undoing that
//   scroll   milliseconds of a step of the thumb to the screen, at the median, at worst; steps a second
//   play     NUMBER seconds at TEMPO (500) with the play line on, in careful manners or in classic ones:
//            microseconds by which steps begin later than start + n steps at the median and at the 99th of a
//            hundred, and how much slower than written it plays, in percent
// clang-format on
#include "Probe.h"
#include "Share.h"
#include "base/QtMessageLoop.h"
#include "base/Settings.h"
#include "base/SteadyClock.h"
#include "composition/Workspace.h"
#include "score/PlaybackEngine.h"
#include "score/SngFile.h"
#include "tableau/form1.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace velmora;
using namespace velmora::probe;

namespace {
/// When each wait of playing ends.
class TimingLoop : public QtMessageLoop {
public:
    void serveUntil(double moment) override {
        QtMessageLoop::serveUntil(moment);
        began.push_back(now());
    }
    std::vector<double> began;
};

/// Eight channels of short notes and four of percussion, from the beginning to the end.
void fill(Score& score) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (channel == kFirstPercussion + 1)
            continue;
        const int length = 2 + channel % 3;
        for (int position = 0; position < score.NumNotes; ++position) {
            const int row =
                channel < kMelodyChannels ? 44 + (position * 7 + channel * 5) % 40 : 42 + channel % 5;
            const int head = position % (length + 1);
            if (head < length)
                score.NoteCell.set(channel, position,
                                   static_cast<std::int16_t>(head == 0 ? row : row + 1000));
        }
    }
    score.TopChannel = kUsedChannels - 1;
    score.FindEndOfSong();
}

/// The composing window with fakes but for the clock.
struct Stage : BasicTestDesk<TimingLoop> {
    explicit Stage(int positions)
        : BasicTestDesk([positions](SettingsStore& store) {
            settings::save(store, settings::NumNotes, positions);
            settings::save(store, settings::Percussion, true);
        })
        , window(desk()) {
        window.setGeometry(0, 0, 1366, 768);
        window.show();
        settle(0.3);
    }
    QWidget& box() { return *window.findChild<QWidget*>("MusicBox"); }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButtons held) {
        const bool moves = type == QEvent::MouseMove;
        QMouseEvent event(type, at, box().mapToGlobal(QPointF(at)), moves ? Qt::NoButton : Qt::LeftButton,
                          held, Qt::NoModifier);
        QApplication::sendEvent(&box(), &event);
    }

    /// When the port was first sent a note-on since it was cleared; 0 for not yet.
    [[nodiscard]] double noteOn() const {
        for (const RecordingPort::Sent& one : port.sent)
            if ((one.word & 0xF0U) == 0x90U)
                return one.moment;
        return 0;
    }

    form1 window;
};

void press() {
    Stage stage(1000);
    fill(stage.workspace().score);
    stage.window.TrackSel_Click(3);
    std::vector<double> toPort;
    std::vector<double> step;
    std::vector<double> release;
    for (int stroke = 0; stroke < 200; ++stroke) {
        const QPoint begin(60 + stroke % 50 * 12, 100 + stroke % 30 * 8);
        stage.port.sent.clear();
        double before = steadySeconds();
        stage.mouse(QEvent::MouseButtonPress, begin, Qt::LeftButton);
        toPort.push_back(1e6 * (stage.noteOn() - before));
        for (int along = 1; along <= 20; ++along) {
            before = steadySeconds();
            stage.mouse(QEvent::MouseMove, begin + QPoint(12 * along, 0), Qt::LeftButton);
            QApplication::processEvents();
            step.push_back(1e6 * (steadySeconds() - before));
        }
        before = steadySeconds();
        stage.mouse(QEvent::MouseButtonRelease, begin + QPoint(240, 0), Qt::NoButton);
        QApplication::processEvents();
        release.push_back(1e6 * (steadySeconds() - before));
    }
    report(shareOf(toPort, 0.5), shareOf(step, 0.5), shareOf(release, 0.5));
}

/// A press at the X server, as a hand makes it.
void hand() {
    Stage stage(1000);
    fill(stage.workspace().score);
    stage.window.TrackSel_Click(3);
    std::FILE* const mouse = popen("xdotool -", "w");
    std::vector<double> toPort;
    for (int stroke = 0; mouse && stroke < 300; ++stroke) {
        const QPoint at = stage.box().mapToGlobal(QPoint(60 + stroke % 50 * 12, 100 + stroke % 30 * 8));
        std::fprintf(mouse, "mousemove %d %d\n", at.x(), at.y());
        std::fflush(mouse);
        settle(0.02);
        stage.port.sent.clear();
        const double before = steadySeconds();
        std::fputs("mousedown 1\n", mouse);
        std::fflush(mouse);
        while (stage.noteOn() == 0 && steadySeconds() < before + 0.5)
            QApplication::processEvents();
        if (stage.noteOn() != 0)
            toPort.push_back(1e6 * (stage.noteOn() - before));
        std::fputs("mouseup 1\n", mouse);
        std::fflush(mouse);
        settle(0.02);
    }
    report(toPort);
}

void open(int positions) {
    Stage stage(positions);
    fill(stage.workspace().score);
    const auto file = std::filesystem::path(stage.home.path().toStdString()) / "full.sng";
    stage.workspace().score.currentFile = file.string();
    if (!SavePoliFile(stage.workspace().score, stage.workspace().setup).empty())
        report(-1, -1, -1);
    std::vector<double> opened;
    std::vector<double> cleared;
    std::vector<double> undone;
    const auto time = [&stage](std::vector<double>& taken, const auto& command) {
        settle(0.3);
        const double before = steadySeconds();
        command();
        QApplication::processEvents();
        QGuiApplication::sync();
        taken.push_back(1e3 * (steadySeconds() - before));
    };
    for (int round = 0; round < 9; ++round) {
        time(cleared, [&] { stage.window.ClearAll(); });
        time(undone, [&] { stage.window.OpenforUndo(); });
        time(opened, [&] { stage.window.openScore(file); });
    }
    report(shareOf(opened, 0.5), shareOf(cleared, 0.5), shareOf(undone, 0.5));
}

void scroll() {
    Stage stage(2000);
    fill(stage.workspace().score);
    announce(stage.workspace(), kAnotherScore);
    auto* bar = stage.window.findChild<QScrollBar*>("HScroll1");
    std::vector<double> taken;
    for (int value = bar->minimum(); value < bar->minimum() + 600; ++value) {
        const double before = steadySeconds();
        bar->setValue(value);
        QApplication::processEvents();
        QGuiApplication::sync();
        taken.push_back(1e3 * (steadySeconds() - before));
    }
    report(shareOf(taken, 0.5), shareOf(taken, 1), 1e3 / shareOf(taken, 0.5));
}

void play(double seconds, int tempo, bool classic) {
    const double step = PlaybackEngine::songStep(tempo);
    Stage stage(static_cast<int>(seconds / step) + 200);
    stage.workspace().setManners(Manners::of(classic));
    fill(stage.workspace().score);
    stage.workspace().score.Tempo = static_cast<std::int16_t>(tempo);
    stage.workspace().play.ShowPlayLine = true;
    QTimer::singleShot(static_cast<int>(seconds * 1000), [&stage] { stage.window.PlayAndStop_Click(true); });
    stage.window.PlayAndStop_Click(false);
    const std::vector<double>& began = stage.loop.began;
    std::vector<double> late;
    for (std::size_t n = 0; n < began.size(); ++n)
        late.push_back(1e6 * (began[n] - began[0] - step * static_cast<double>(n)));
    const double steps = step * static_cast<double>(began.size() - 1);
    report(shareOf(late, 0.5), shareOf(late, 0.99), 100 * ((began.back() - began[0]) / steps - 1));
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "press")
        press();
    else if (what == "hand")
        hand();
    else if (what == "open")
        open(argc > 2 ? std::atoi(argv[2]) : 1000);
    else if (what == "scroll")
        scroll();
    else if (what == "play")
        play(argc > 2 ? std::atof(argv[2]) : 60, argc > 3 ? std::atoi(argv[3]) : 500,
             argc > 4 && std::string_view(argv[4]) == "classic");
    return 2;
}
