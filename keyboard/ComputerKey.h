// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string_view>

namespace velmora {

/// A key of the computer, as it goes down or up.
struct ComputerKey {
    static constexpr int kSpace = 32;
    static constexpr int kFirstCode = 45;
    static constexpr int kLastCode = 90;

    int position = 0; ///< which key it is, whatever it types now: what its release is known by
    int code = 0;     ///< 45 to 90 for letters and digits, 32 for the space bar; 0 where only its text counts
    std::string_view text;      ///< the character that it types, UTF-8; blank for none
    std::string_view otherText; ///< the same in the other case, with which labels are compared last
};

} // namespace velmora
