// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"

#include <cstdint>

namespace velmora {

struct Workspace;

/// In what respect the composition has changed.
enum class Change : std::uint32_t {
    Cells = 1U << 0,       ///< notes of melody channels, with all that stands at their positions
    Beats = 1U << 1,       ///< the same of percussion channels
    Channels = 1U << 2,    ///< which channel is active, and which are in use, shown or muted
    Instruments = 1U << 3, ///< what the next note will sound like
    Sound = 1U << 4,       ///< the level and the controllers of a channel
    Meter = 1U << 5,       ///< the tempo and the meter
    Length = 1U << 6,      ///< `NumNotes`
    Marks = 1U << 7,       ///< what is selected, and where playing begins
    Undo = 1U << 8,        ///< what can be taken back
    Modes = 1U << 9,       ///< what the mouse buttons do
    Looks = 1U << 10,      ///< how the Tableaux show the score: staves, row height, notation
    Tools = 1U << 11,      ///< what the selectors of Single Note Effects stand on
    Device = 1U << 12,     ///< which MIDI device is open
    File = 1U << 13,       ///< another score has taken the place
    Name = 1U << 14,       ///< the score has another name
    Effects = 1U << 15,    ///< volume or effects of positions, which no Tableau shows
    Manners = 1U << 16,    ///< classic or careful
};

/// A set of them.
class Changes {
public:
    constexpr Changes() = default;
    constexpr Changes(Change one) : bits_(static_cast<std::uint32_t>(one)) {}

    [[nodiscard]] constexpr bool any() const { return bits_ != 0; }
    [[nodiscard]] constexpr bool any(Changes of) const { return (bits_ & of.bits_) != 0; }
    constexpr Changes& operator|=(Changes more) {
        bits_ = static_cast<std::uint32_t>(bits_ | more.bits_);
        return *this;
    }
    friend constexpr Changes operator|(Changes one, Changes other) { return one |= other; }
    constexpr bool operator==(const Changes&) const = default;

private:
    std::uint32_t bits_ = 0;
};

constexpr Changes operator|(Change one, Change other) {
    return Changes(one) | Changes(other);
}

/// Notes of any channel.
inline constexpr Changes kAnyNotes = Change::Cells | Change::Beats;
/// Notes of that channel.
[[nodiscard]] Changes changeOfNotes(int channel);
/// What a score that takes the place of another changes.
inline constexpr Changes kAnotherScore = kAnyNotes | Change::Channels | Change::Instruments | Change::Meter |
                                         Change::Length | Change::Marks | Change::Undo | Change::Modes |
                                         Change::Tools | Change::File | Change::Name | Change::Effects;

/// Who shows the composition. It looks at the composition when it is told, and changes nothing then.
class Watcher {
public:
    virtual void changed(Changes changes) = 0;

protected:
    ~Watcher() = default;
};

/// All who watch one composition, each as long as its stay.
class Watchers {
public:
    Guests<Watcher>::Stay join(Watcher& watcher) { return guests_.join(watcher); }

private:
    friend class Act;
    friend class Edit;

    void tell();

    Guests<Watcher> guests_;
    Changes pending_;
    int edits_ = 0; ///< that have begun and not ended
    int acts_ = 0;  ///< likewise
    bool keepsInUse_ = false;
};

/// The scope of an act of the user that takes several edits, a drag say: one step of undo. Who watches is
/// told at the end of each edit all the same.
class Act {
public:
    explicit Act(Workspace& workspace);
    ~Act();
    Act(const Act&) = delete;
    Act& operator=(const Act&) = delete;

private:
    Workspace& workspace_;
};

/// The scope of a change, and a step of undo unless an `Act` goes on. Edits may stand in one another: at the
/// end of the outermost each watcher is told once of everything that has changed, and nobody if nothing has.
/// Who changes the composition opens one. What waits in the message loop within it is seen late.
class Edit {
public:
    explicit Edit(Workspace& workspace, Changes changes = {});
    ~Edit();
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

    void add(Changes changes);
    /// The channels in use are as they are to be, too, though notes have changed.
    void keepChannelsInUse();

private:
    Workspace& workspace_;
};

/// What has been changed outside an edit, or is to be shown anew: told at once, or with the edit that goes
/// on.
void announce(Workspace& workspace, Changes changes);

} // namespace velmora
