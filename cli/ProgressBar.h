// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

namespace velmora::cli {

/// A bar on standard error, drawn only on a terminal and only once the work has lasted a second.
class ProgressBar {
public:
    explicit ProgressBar(std::string label, double secondsBeforeShowing = 1.0);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// @param share of the work done, 0 to 1
    void show(double share);

private:
    std::string label_;
    bool onTerminal_;
    double showFrom_;
    int drawnPercent_ = -1;
};

} // namespace velmora::cli
