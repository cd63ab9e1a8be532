// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_song_probe WHAT [POSITIONS]: the Songwriter's window, on the X server that is there; prints three
// numbers.
//
// clang-format off
//   open     milliseconds from the first command to the painted window, at the median of several; and of a
//            plain window with as many children; their ratio
//   scroll   milliseconds of a step of a page's scroll bar to the screen, at the median; of a plain widget
//            that draws one picture of the same size; how often marks became pixels in 400 steps
//   write    POSITIONS of a score on five staves: seconds of "Write Score" to the painted pages; milliseconds
//            of the step to the next page, at the median of 100; MiB that the window takes besides the marks
// clang-format on
#include "ExposeWatch.h"
#include "Probe.h"
#include "base/QtMessageLoop.h"
#include "base/Settings.h"
#include "songwriter/Commands.h"
#include "songwriter/MDIScore.h"
#include "songwriter/PageArea.h"
#include "songwriter/PageView.h"
#include "songwriter/ScoreSheet.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <cstdlib>
#include <string_view>

using namespace velmora;
using namespace velmora::probe;

namespace {

/// Runs of eighths and sixteenths with quarters and rests between, another in each of five channels.
void fill(Score& score) {
    constexpr int kStaves = 5;
    for (int channel = 0; channel < kStaves; ++channel)
        for (int position = channel; position < score.NumNotes;) {
            const int length = 1 + (position * 7 + channel * 3) % 4;
            const int row = 48 + (position * 5 + channel * 11) % 30;
            for (int i = 0; i < length && position + i < score.NumNotes; ++i)
                score.NoteCell.set(channel, position + i,
                                   static_cast<std::int16_t>(i == 0 ? row : row + 1000));
            position += length + (position % 5 == 0 ? 2 : 0);
        }
    score.FindEndOfSong();
}

/// The Songwriter with fakes but for the clock, in careful manners.
struct Stage : BasicTestDesk<QtMessageLoop> {
    explicit Stage(int positions)
        : BasicTestDesk([positions](SettingsStore& store) {
            settings::save(store, settings::Classic, 0);
            settings::save(store, settings::NumNotes, positions);
        })
        , window(desk()) {
        fill(score());
        window.resize(1024, 720);
        window.open();
        settle(0.3);
    }

    MDIScore window;
};

/// A widget that is one picture.
class Plain : public QWidget {
public:
    explicit Plain(QSize size) : picture_(size, QImage::Format_RGB32) {
        picture_.fill(Qt::white);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    void scrollTo(int y) {
        y_ = y;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).drawImage(rect(), picture_, QRect(0, y_, width(), height()));
    }

private:
    QImage picture_;
    int y_ = 0;
};

void scroll() {
    constexpr int kSteps = 400;
    Stage stage(4000);
    stage.window.Lb1_Click(songButton("write"));
    settle(0.3);
    PageView& view = stage.window.pages().frontSheet()->Pic1();
    auto* bar = stage.window.pages().frontSheet()->findChild<QScrollBar*>("VScroll1");
    const int before = view.rasterised();
    std::vector<double> ours;
    for (int step = 0; step < kSteps; ++step)
        ours.push_back(milliseconds([&] { bar->setValue(step % bar->maximum()); }));
    const int made = view.rasterised() - before;
    const QSize size = view.size();
    Plain plain(size + QSize(0, kSteps));
    plain.resize(size);
    plain.show();
    settle(0.3);
    std::vector<double> theirs;
    for (int step = 0; step < kSteps; ++step)
        theirs.push_back(milliseconds([&] { plain.scrollTo(step); }));
    report(shareOf(ours, 0.5), shareOf(theirs, 0.5), made);
}

void write(int positions) {
    Stage stage(positions);
    const double seconds = 1e-3 * milliseconds([&] { stage.window.Lb1_Click(songButton("write")); });
    settle(0.3);
    const long whole = residentKiB();
    std::vector<double> steps;
    constexpr int kSteps = 100;
    for (int step = 0; step < kSteps; ++step)
        steps.push_back(milliseconds([&] { stage.window.pages().step(1); }));
    const notation::EngravedScore& score = stage.song().sheets().engraved();
    std::fprintf(stderr, "%zu pages, %ld KiB, after steps %ld KiB, %d widgets\n", score.pages.size(), whole,
                 residentKiB(), static_cast<int>(stage.window.findChildren<QWidget*>().size()));
    report(seconds, shareOf(steps, 0.5), 0);
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "open")
        reportOpening<MDIScore>();
    else if (what == "scroll")
        scroll();
    else if (what == "write")
        write(argc > 2 ? std::atoi(argv[2]) : 16'000);
    return 2;
}
