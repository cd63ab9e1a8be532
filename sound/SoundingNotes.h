// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace velmora {

/// What a MIDI port still has sounding: how many note-ons of each note wait for their note-off, and which
/// pedals are down. It is told every word that was sent and answers with the words that bring silence.
/// Thread-safe: no. One object belongs to one thread.
class SoundingNotes {
public:
    /// Takes note of a packed short message that the port has taken. Anything that is no valid channel
    /// message is passed over. Realtime-safe: yes.
    void sent(std::uint32_t word);

    /// Note-offs, as many as there were note-ons (a receiver may count them, and to one that does not the
    /// spare ones are nothing), then "pedal up" where a sustain or sostenuto pedal is down; by channel and
    /// note. Telling `sent` all of them leaves nothing sounding.
    [[nodiscard]] std::vector<std::uint32_t> silencingWords() const;

    /// True when `silencingWords` would be empty. Realtime-safe: yes.
    [[nodiscard]] bool nothingSounds() const { return waiting_ == 0 && sustained_ == 0 && sostenuto_ == 0; }

private:
    void noteOn(int channel, int note);
    void noteOff(int channel, int note);
    void controller(int channel, int number, int value);
    void forgetNotes(int channel);

    std::array<std::array<std::uint16_t, 128>, 16> counts_{}; ///< note-ons that wait for a note-off
    int waiting_ = 0;                                         ///< sum of all counts
    std::uint16_t sustained_ = 0;                             ///< a bit a channel: controller 64 is down
    std::uint16_t sostenuto_ = 0;                             ///< a bit a channel: controller 66 is down
};

} // namespace velmora
