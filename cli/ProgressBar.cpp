// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/ProgressBar.h"

#include "base/SteadyClock.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace velmora::cli {

ProgressBar::ProgressBar(std::string label, double secondsBeforeShowing)
    : label_(std::move(label))
    , onTerminal_(isatty(STDERR_FILENO) == 1)
    , showFrom_(steadySeconds() + secondsBeforeShowing) {}

ProgressBar::~ProgressBar() {
    if (drawnPercent_ >= 0)
        std::fputs("\r\x1b[K", stderr);
}

void ProgressBar::show(double share) {
    constexpr int kWidth = 40;
    const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * 100);
    if (!onTerminal_ || percent == drawnPercent_ || steadySeconds() < showFrom_)
        return;
    drawnPercent_ = percent;
    const int filled = percent * kWidth / 100;
    std::fprintf(stderr, "\r%s [%s%s] %3d %%", label_.c_str(),
                 std::string(static_cast<std::size_t>(filled), '#').c_str(),
                 std::string(static_cast<std::size_t>(kWidth - filled), '.').c_str(), percent);
    std::fflush(stderr);
}

} // namespace velmora::cli
