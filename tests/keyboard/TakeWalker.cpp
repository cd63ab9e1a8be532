// SPDX-License-Identifier: GPL-2.0-or-later
// Records until it is killed: TakeWalker FOLDER. It says the moment of each tick, on the wall's clock.
#include "keyboard/PlayedLog.h"
#include "keyboard/TakeStack.h"

#include <chrono>
#include <cstdio>
#include <thread>

int main(int argc, char* argv[]) {
    using namespace velmora;
    if (argc != 2)
        return 2;
    TakeStack stack(argv[1], wallSeconds);
    Take take;
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    double nextLook = 0;
    for (int i = 0; i < 6'000; ++i) {
        take.List1.push_back(0);
        take.List3.push_back(50 + i % 7 / 6);
        const double now = wallSeconds();
        std::printf("%.6f\n", now);
        if (now >= nextLook)
            nextLook = now + stack.look(take, true, 0.01).value_or(0);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 0;
}
