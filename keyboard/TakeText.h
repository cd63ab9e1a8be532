// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Take.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// A take with what is known of it.
struct KeptTake {
    std::int64_t when = 0;   ///< it began, in milliseconds since 1970
    std::int64_t length = 0; ///< milliseconds
    Take take;
    bool operator==(const KeptTake&) const = default;
};

/// No take is kept beyond this: a day of ticks of 10 ms.
inline constexpr int kMostTakeTicks = 8'640'000;

/// The ticks of a take that grows, as lines of text: a line for each run of a row.
class TakeRuns {
public:
    /// Takes in what the take has grown by.
    void extend(const Take& take);
    [[nodiscard]] int ticks() const { return ticks_; }
    [[nodiscard]] std::string lines() const;

private:
    struct Run {
        int length = 0;
        std::int32_t row = 0;
        std::int32_t count = 0; ///< at its first tick; with 0 at all of them
    };
    static void append(std::string& lines, const Run& run);

    std::string ended_;
    Run run_;
    int ticks_ = 0;
};

// What a kept take's file holds: a heading, when it began, how long it is, its runs, and a checksum of all
// that.

[[nodiscard]] std::string takeText(std::int64_t when, std::int64_t length, const TakeRuns& runs);
/// Any bytes will do; nothing comes back for what isn't whole.
[[nodiscard]] std::optional<KeptTake> parseTakeText(std::string_view text);
/// The last line of a text that is otherwise complete.
[[nodiscard]] std::string takeChecksumLine(std::string_view text);

} // namespace velmora
