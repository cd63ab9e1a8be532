// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace velmora {

class KeyboardSound;
struct KeyboardControls;
struct Manners;

/// What holds a key down, and tells its release from others'.
struct Presser {
    enum class Kind : std::uint8_t { ComputerKey, Mouse, Midi };
    Kind kind = Kind::ComputerKey;
    int source = 0; ///< the MIDI input
    int id = 0;     ///< the computer key's position, the MIDI note

    bool operator==(const Presser&) const = default;
};

/// Keys going down and up, and what sounds of it: the root, its chord at once or strummed, and what a release
/// ends. Nothing waits here: a strummed note is due, and `strumNext` sounds it.
class KeyVoice {
public:
    static constexpr int kVelocity = 100;

    KeyVoice(KeyboardSound& sound, const KeyboardControls& controls, const Manners& manners);

    void spacebarDown();
    void spacebarUp();

    /// `NoteDown3`: strikes the key, and its chord as the controls say. The root is sent first.
    void NoteDown3(int key, Presser presser, double now);
    /// One note beside all chords. It may lie outside the keys.
    void strikeNote(int note, int velocity, Presser presser);
    /// Releases all that this presser holds. `NoteUp3`, for a computer key.
    void release(Presser presser);
    /// Releases everything of that kind, or all there is, in the order in which it was struck. @p quietly
    /// ends what sounds and does nothing else.
    void releaseAll(std::optional<Presser::Kind> kind = std::nullopt, bool quietly = false);
    void releaseSource(int midiSource);
    [[nodiscard]] bool holds(Presser presser) const;
    /// Whether the key was the last that a computer key struck, and is still down: striking it again is none.
    [[nodiscard]] bool isLastStruckAndDown(int key) const { return lastStruck_ == key; }
    void forgetLastStruck() { lastStruck_.reset(); }
    /// All sound has been cut: nothing is left to be ended note by note.
    void silenced();

    [[nodiscard]] std::optional<double> nextDue() const;
    [[nodiscard]] bool isStrumming() const { return !strums_.empty(); }
    /// Sounds the strummed note that is due first.
    void strumNext();

private:
    /// A key that is down, with what its press has sounded.
    struct Held {
        Presser presser;
        int key = 0;
        int channel = 0;
        std::array<std::uint8_t, 16> notes{};
        std::size_t count = 0;
    };
    /// What is left of a strum: the notes from `next` of `ChordNotes` down to the root.
    struct Strum {
        Presser presser;
        int key = 0;
        int channel = 0;
        int next = 0;
        double due = 0;
    };

    [[nodiscard]] bool playsChord() const;
    void fillChord(int key);
    void strikeChord(Held& held, double now);
    void sound(Held& held, int note, int velocity = kVelocity);
    void endWhatWasStruck(const Held& held);
    void letGo(const Held& held);
    void NoteUp3(const Held& held);
    void end(const Held& held, bool quietly);
    template<class Which>
    void releaseIf(const Which& which, bool quietly);

    KeyboardSound& sound_;
    const KeyboardControls& controls_;
    const Manners& manners_;

    std::array<int, 5>
        ChordNotes{};      ///< of the last chord, the root first: shared by strums that overlap, as meant
    double StrumDelay = 0; ///< seconds
    bool spacebar_ = false;
    bool Label5 = false; ///< it reads "32": the space bar went down while it makes chords
    std::vector<Held> held_;
    std::vector<Strum> strums_;
    std::array<std::array<std::uint8_t, 128>, 16> holders_{}; ///< presses that keep a note sounding
    std::optional<int> lastStruck_;
};

} // namespace velmora
