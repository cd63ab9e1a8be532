// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace velmora {

/// A tune that everybody knows.
struct KnownTune {
    std::string_view name;
    int beats; ///< of its meter
    int value;
    int pickUp; ///< sixteenths before the first bar line
    /// Notes as name, octave and sixteenths, "f#4:3" say; "r" is a rest.
    std::string_view text;
};

struct TuneNote {
    int start = 0; ///< sixteenths from the first note
    int length = 0;
    int note = 0;
};

/// In the public domain, all of them.
[[nodiscard]] const std::vector<KnownTune>& knownTunes();
[[nodiscard]] std::vector<TuneNote> notesOf(const KnownTune& tune);

} // namespace velmora
