// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/TakeReadout.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace velmora::cli {

TakeReadout::TakeReadout(const std::filesystem::path& file)
    : label_(file.filename().string())
    , onTerminal_(isatty(STDERR_FILENO) == 1) {}

void TakeReadout::show(const std::string& time, const Levels& levels) {
    if (!onTerminal_)
        return;
    isDrawn_ = true;
    std::fprintf(stderr, "\r\x1b[K%s %s", label_.c_str(), time.c_str());
    for (const std::size_t side : {std::size_t{0}, std::size_t{1}})
        std::fprintf(stderr, "  %s %s (%s)%s", side == 0 ? "L" : "R", decibels(levels.peak[side]).c_str(),
                     decibels(levels.held[side]).c_str(), levels.clipped[side] ? " CLIP" : "");
    std::fflush(stderr);
}

void TakeReadout::clear() {
    if (isDrawn_)
        std::fputs("\r\x1b[K", stderr);
    isDrawn_ = false;
}

std::string decibels(float level) {
    if (level <= 0)
        return "-inf dB";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f dB", 20 * std::log10(static_cast<double>(level)));
    return text.data();
}

} // namespace velmora::cli
