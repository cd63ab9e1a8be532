// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PlayedEvent.h"
#include "keyboard/PlayedNote.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {

/// Makes notes of what a hand did. A note that is let go of under the pedal ends with that.
class PlayedNoteBook {
public:
    /// @param room notes that it has memory for at once, so that a strike takes none
    explicit PlayedNoteBook(std::size_t room = 0) { notes_.reserve(room); }

    /// Events come in the order of their moments. What makes no sense, the end of a note that does not sound
    /// say, is passed over.
    void take(const PlayedEvent& event);
    /// Has no note any more that ended before.
    void forgetBefore(double moment);
    /// In the order of their onsets; what still sounds ends at @p now.
    [[nodiscard]] std::vector<PlayedNote> notes(double now) const;

private:
    static constexpr std::int64_t kSilent = -1;
    /// Of a channel and note that sound: which note they are.
    struct Sounding {
        std::int64_t note = kSilent; ///< counted from the first there ever was
        bool held = true;            ///< by its key, and not by the pedal alone
    };
    using Channel = std::array<Sounding, 128>;

    void end(Sounding& sounding, double moment);

    std::vector<PlayedNote> notes_;
    std::int64_t forgotten_ = 0;
    std::array<Channel, 16> sounding_{};
    std::array<bool, 16> pedals_{};
};

} // namespace velmora
