// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/BurnLibrary.h"

#include "LateNames.h"

#include <array>

namespace velmora::burner {

BurnLibrary::BurnLibrary() : LateLibrary(kBurnLibrary) {
    if (complete())
        start();
}

void BurnLibrary::start() {
    ready = burn_initialize() != 0;
    // What happens is asked for and told in words of ours; nothing goes to the terminal, nothing aborts.
    std::string queue = "SORRY";
    std::string print = "NEVER";
    std::string nobody;
    burn_msgs_set_severities(queue.data(), print.data(), nobody.data());
}

void BurnLibrary::restart() {
    burn_finish();
    start();
}

BurnLibrary& library() {
    static BurnLibrary only;
    return only;
}

bool isThere() {
    return library().complete() && library().ready;
}

std::mutex& oneAtATime() {
    static std::mutex only;
    return only;
}

std::vector<std::string> complaints() {
    std::vector<std::string> texts;
    std::array<char, BURN_MSGS_MESSAGE_LEN + 1> text{};
    std::array<char, 81> severity{};
    std::string least = "SORRY";
    int code = 0;
    int os = 0;
    while (library().burn_msgs_obtain(least.data(), &code, text.data(), &os, severity.data()) > 0)
        texts.emplace_back(text.data());
    return texts;
}

} // namespace velmora::burner
