// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/TakeWork.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace velmora {

/// How loud a file is, measured on a thread of its own. All calls come from the thread that made it.
class TakeLoudness {
public:
    /// Told when it is known. Nothing of this may be called from it.
    std::function<void()> onKnown;

    /// Measures that file, unless it has done so, or does, in its present state. A blank name and a file that
    /// isn't there are forgotten.
    void follow(const std::filesystem::path& file);
    void forget() { follow({}); }
    /// "Peak -3.2 dB, loudness -18.1 LUFS"; blank for a file that it doesn't know yet.
    [[nodiscard]] std::string words(const std::filesystem::path& file) const;

private:
    std::filesystem::path file_;
    std::filesystem::file_time_type time_;
    std::string words_;
    std::unique_ptr<TakeWork> work_;
};

} // namespace velmora
