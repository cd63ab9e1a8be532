// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_start_probe MOMENT WHAT [DELAY]: shows a window as the program does and prints, once it stands
// painted on the screen: the seconds that took, the memory in KiB, and how many children it has.
//
// clang-format off
//   opener   the start window; seconds from MOMENT (nanoseconds of the steady clock), the start of the process
//   form1    the composing window, from where the start window's button is pressed by a call
//   return   the same, from a press of Return at the X server, DELAY milliseconds after the start window's
//            first picture
//   skins    changes the skin with the composing window and the help open: the longest change, memory, skins
// clang-format on
#include "ExposeWatch.h"
#include "app/Program.h"
#include "shell/FirstPaint.h"
#include "shell/openerF.h"
#include "sound/MidiBackends.h"
#include "tableau/form1.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

using namespace velmora;

namespace {

constexpr int kSettled = 500; ///< milliseconds until the start window has nothing left to do

/// With the composing window and the help open.
[[noreturn]] void reportSkins() {
    auto* opener = dynamic_cast<openerF*>(windowNamed("openerF"));
    opener->Command2_Click();
    auto* form = dynamic_cast<form1*>(windowNamed("form1"));
    form->imgTitleHelp_Click();
    const double open = steadySeconds() + 1;
    while (steadySeconds() < open)
        QApplication::processEvents();
    double longest = 0;
    for (int skin = 1; skin <= kSkinCount; ++skin) {
        const double begin = steadySeconds();
        form->skins().Skintype_Click(skin);
        QApplication::processEvents();
        QGuiApplication::sync();
        longest = std::max(longest, steadySeconds() - begin);
    }
    std::printf("%.6f %ld %d\n", longest, residentKiB(), kSkinCount);
    std::fflush(stdout);
    std::_Exit(0);
}

/// Presses Return at the X server; on a thread of its own, since a user waits for no event loop.
class Hand {
public:
    explicit Hand(int delay, ExposeWatch& watch) : hand_(popen("xdotool -", "w"), pclose) {
        say("mousemove 683 384\n");
        thread_ = std::jthread([this, delay, &watch] {
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            watch.setSince(steadySeconds());
            say("key Return\n");
        });
    }

private:
    void say(const char* words) {
        std::fputs(words, hand_.get());
        std::fflush(hand_.get());
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> hand_;
    std::jthread thread_;
};

} // namespace

int main(int argc, char* argv[]) {
    const double started = argc > 1 ? std::atof(argv[1]) * 1e-9 : 0;
    const std::string_view what = argc > 2 ? argv[2] : "";
    auto backends = createMidiBackends();
    const QApplication application(argc, argv);
    Program program(std::move(backends), {}, {}, {});
    const bool composes = what == "form1" || what == "return";
    ExposeWatch watch(composes ? "form1" : what == "opener" ? "openerF" : "none", started);
    program.start();
    std::optional<Hand> hand;
    if (what == "form1")
        QTimer::singleShot(kSettled, [&watch] {
            watch.setSince(steadySeconds());
            dynamic_cast<openerF*>(windowNamed("openerF"))->Command2_Click();
        });
    if (what == "return")
        afterFirstPaint(*windowNamed("openerF"),
                        [&] { hand.emplace(argc > 3 ? std::atoi(argv[3]) : kSettled, watch); });
    if (what == "skins")
        QTimer::singleShot(kSettled, reportSkins);
    return QApplication::exec();
}
