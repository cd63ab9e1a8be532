// SPDX-License-Identifier: GPL-2.0-or-later
// Plays until it is killed: PlayedWalker FILE. It says the moment of each strike, on the wall's clock.
#include "base/SteadyClock.h"
#include "base/VirtualLoop.h"
#include "keyboard/PlayedLog.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {
class SteadyLoop : public velmora::VirtualLoop {
public:
    [[nodiscard]] double now() const override { return velmora::steadySeconds(); }
};
} // namespace

int main(int argc, char* argv[]) {
    using namespace velmora;
    if (argc != 2)
        return 2;
    const SteadyLoop loop;
    PlayedLog log(argv[1], loop);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    for (int i = 0; i < 30'000; ++i) {
        log.struck(0, i % 128, 90, 0, loop.now());
        std::printf("%.6f\n", wallSeconds());
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        log.ended(0, i % 128, loop.now());
    }
    return 0;
}
