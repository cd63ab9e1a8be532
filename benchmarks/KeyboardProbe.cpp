// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_keyboard_probe WHAT: the keyboard's window, on the X server that is there; prints three numbers.
//
// clang-format off
//   hand     microseconds from the X server's word that a key has gone down to its note-on at the port: at the
//            median, at the 99th of a hundred, at worst
//   sample   microseconds by which the samples of a take are late while keys are struck and painted, likewise
//   idle     percent of a core that the window takes while a metronome runs, over ten seconds; twice 0
//   paint    microseconds of a key that turns red or back until the server has it: a white one and a black one
//            at the median, either at the 99th of a hundred
//   open     milliseconds from the first command to the painted window, at the median of several; and of a
//            plain window with as many children; their ratio
// clang-format on
#include "Probe.h"
#include "Share.h"
#include "base/QtMessageLoop.h"
#include "base/SteadyClock.h"
#include "synth/KeyArea.h"
#include "synth/frmsynth.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

using namespace velmora;
using namespace velmora::probe;

namespace {

/// The keyboard with fakes but for the clock.
struct Stage : BasicTestDesk<QtMessageLoop> {
    Stage() : window(desk(), nullptr) {
        window.open();
        settle(0.5);
    }

    /// When the port was first sent a note-on since it was cleared.
    [[nodiscard]] std::optional<double> noteOn() const {
        for (const RecordingPort::Sent& one : port.sent)
            if ((one.word & 0xF0U) == 0x90U)
                return one.moment;
        return std::nullopt;
    }

    frmsynth window;
};

constexpr const char* kKeys[] = {"z", "x", "c", "v", "b", "n", "m", "q", "w", "e", "r", "t", "y", "u"};
constexpr int kKeyCount = static_cast<int>(std::size(kKeys));

/// When the X server's last word of a key that goes down was read.
class KeyWatch : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) override {
        constexpr unsigned kKeyPress = 2; // of the X protocol
        constexpr unsigned kKind = 0x7F;
        if (type == "xcb_generic_event_t" &&
            (*static_cast<const std::uint8_t*>(message) & kKind) == kKeyPress)
            pressed = steadySeconds();
        return false;
    }
    double pressed = 0;
};

void hand() {
    Stage stage;
    KeyWatch watch;
    qApp->installNativeEventFilter(&watch);
    std::FILE* const keys = popen("xdotool -", "w");
    std::vector<double> toPort;
    for (int strike = 0; keys && strike < 400; ++strike) {
        stage.port.sent.clear();
        const char* const key = kKeys[strike % kKeyCount];
        const double before = steadySeconds();
        std::fprintf(keys, "keydown %s\n", key);
        std::fflush(keys);
        while (!stage.noteOn() && steadySeconds() < before + 0.5)
            QApplication::processEvents();
        if (const auto moment = stage.noteOn())
            toPort.push_back(1e6 * (*moment - watch.pressed));
        std::fprintf(keys, "keyup %s\n", key);
        std::fflush(keys);
        settle(0.02);
    }
    report(toPort);
}

void sample() {
    Stage stage;
    Keyboard& keyboard = stage.window.keyboard();
    keyboard.CmdRec_Click();
    std::FILE* const keys = popen("xdotool -", "w");
    if (keys) {
        for (int strike = 0; strike < 150; ++strike)
            std::fprintf(keys, "keydown %s\nsleep 0.04\nkeyup %s\nsleep 0.02\n", kKeys[strike % kKeyCount],
                         kKeys[strike % kKeyCount]);
        std::fflush(keys);
    }
    std::vector<double> late;
    int samples = 0;
    for (const double end = steadySeconds() + 9; steadySeconds() < end;) {
        const auto due = keyboard.nextDue();
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (keyboard.take.size() == samples)
            continue;
        samples = keyboard.take.size();
        if (due)
            late.push_back(1e6 * (stage.loop.now() - *due));
    }
    report(late);
}

void idle() {
    Stage stage;
    stage.window.keyboard().chkRunning_Click(true);
    stage.window.arm();
    settle(1);
    report(percentOfCore(), 0, 0);
}

void paint() {
    Stage stage;
    auto& keys = *static_cast<KeyArea*>(stage.window.findChild<QWidget*>("Picture1"));
    std::array<std::vector<double>, 2> spent; // of white keys, and of black ones
    std::vector<double> all;
    for (int change = 0; change < 2000; ++change) {
        const int key = change % kPianoKeys;
        const double before = steadySeconds();
        keys.showKey(key, change / kPianoKeys % 2 == 0);
        QApplication::processEvents();
        QGuiApplication::sync();
        all.push_back(1e6 * (steadySeconds() - before));
        spent[isBlackKey(key) ? 1 : 0].push_back(all.back());
    }
    report(shareOf(spent[0], 0.5), shareOf(spent[1], 0.5), shareOf(all, 0.99));
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "hand")
        hand();
    else if (what == "sample")
        sample();
    else if (what == "idle")
        idle();
    else if (what == "paint")
        paint();
    else if (what == "open")
        reportOpening<frmsynth>();
    return 2;
}
