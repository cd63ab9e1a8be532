// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Capture.h"

#include <filesystem>
#include <string>

namespace velmora::cli {

/// How long a take is and how loud, both sides with what they held, on one line of standard error. On a
/// terminal alone.
class TakeReadout {
public:
    explicit TakeReadout(const std::filesystem::path& file);
    ~TakeReadout() { clear(); }
    TakeReadout(const TakeReadout&) = delete;
    TakeReadout& operator=(const TakeReadout&) = delete;

    void show(const std::string& time, const Levels& levels);
    void clear();

private:
    std::string label_;
    bool onTerminal_;
    bool isDrawn_ = false;
};

/// "-12.3 dB" of full scale; "-inf dB" for silence.
[[nodiscard]] std::string decibels(float level);

} // namespace velmora::cli
