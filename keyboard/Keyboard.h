// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "keyboard/HeldKeys.h"
#include "keyboard/KeyScheme.h"
#include "keyboard/KeyboardControls.h"
#include "keyboard/PlayedNotes.h"
#include "keyboard/Take.h"
#include "keyboard/TakePlayer.h"
#include "keyboard/cMetronome.h"
#include "sound/SetupState.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class MessageLoop;
class MidiPort;
struct Manners;

/// What the keyboard asks of whoever shows it.
class KeyboardView {
public:
    /// The key sounds on `SoundChannel`, or no longer.
    virtual void showKey(int /*key*/, bool /*sounds*/) {}
    /// A beat of the metronome, 1 to 4.
    virtual void showBeat(int /*number*/) {}
    /// A take begins or ends, playing begins, pauses or ends: the lamp and the buttons.
    virtual void showTransport() {}
    /// `Text9`: where in the take playing is.
    virtual void showPosition(int /*position*/) {}
    /// "Recording has not been saved. Overwrite?"
    virtual bool confirmOverwrite() { return true; }

protected:
    ~KeyboardView() = default;
};

/// A computer key, as it goes down or up.
struct ComputerKey {
    int position = 0; ///< which key it is, whatever is typed with it: what a release is known by
    int code = 0; ///< 45 to 90 for letters and digits; 32 the space bar; 0 where it plays by its text alone
    std::string_view text;      ///< the character that it types, UTF-8; blank for none
    std::string_view otherText; ///< the same in the other case, which a label is compared with last
};

/// The keyboard without its window: presses come in, short messages go out through the port. Nothing of it
/// waits; what is due later, a strummed note, a sample of a take, a step of playing, a beat, is done by
/// `runDue` at the moment that `nextDue` gives. A strike sends the root's note-on first and allocates
/// nothing.
///
/// In classic manners a release sends the note-offs of the key under the present octave and chord, so that
/// notes go on sounding where these were changed meanwhile, or the space bar went up first.
class Keyboard final : private TakeSound {
public:
    static constexpr int kVelocity = 100;
    static constexpr int kMetronomeChannel = 14;
    /// The space bar's code.
    static constexpr int kSpace = 32;

    /// All that is referred to outlives the keyboard.
    Keyboard(MidiPort& port, const MessageLoop& clock, PerChannel<PlaybackChannelSetup>& channels,
             const Manners& manners);
    ~Keyboard();

    KeyScheme scheme = KeyScheme::builtIn();
    KeyboardControls controls; ///< to be read; the routines below write it
    Take take;

    /// Until it is called with null.
    void setView(KeyboardView* view);
    void setPlayedNotes(PlayedNotes* played) { played_ = played; }

    /// What loading the window sends: the drum bank, the volume, the program. The records of the channels
    /// take their start names and programs.
    void load(int volume, int program);
    /// What closing it does: keys up, playing, taking and beating end, silence.
    void unload();

    // Time.

    [[nodiscard]] std::optional<double> nextDue() const;
    /// Does all that is due by now, each at its own moment as far as what it does depends on that.
    void runDue();

    // The computer's keys. Nothing while `Check1` is on.

    void Form_KeyDown(const ComputerKey& key);
    void Form_KeyUp(const ComputerKey& key);
    /// Every key that is down, of whatever kind, goes up: the focus is gone, say.
    void releaseAll();

    // The mouse.

    /// Strikes one note, also beside a chord. @param velocity as its height on the key says; classic manners
    /// have one velocity.
    void CmdKey_MouseDown(int key, int velocity = kVelocity);
    void CmdKey_MouseUp();

    // MIDI keyboards. Their notes sound on `SoundChannel` as they are.

    /// @param source tells inputs apart
    void midi(int source, std::uint32_t word);
    /// It is gone: its notes and its pedal end.
    void endMidi(int source);

    // The controls.

    /// The pointer was moved: its place as a share of its travel.
    void drag(KeyboardSlider slider, double share);
    /// The pointer was brought to a value, which is within the slider's range.
    void set(KeyboardSlider slider, double value);
    void rightClick(KeyboardSlider slider);
    /// What a slider stands for now.
    [[nodiscard]] double value(KeyboardSlider slider) const;
    void Option5_Click(int octaves);
    void setPolynotes(Polynotes polynotes);
    void setStrum(bool on);
    void ChkSustain_Click(bool on);
    void ChkMute_Click(bool on);
    /// The picker's choice, for `SoundChannel`.
    void chooseInstrument(int program, std::string_view name);
    /// The device was opened anew.
    void sendInstrumentAgain();
    /// `Label4`, the panic bar; buttons 10 and 13.
    void panic();
    void setEditing(bool on);
    /// A label of the scheme while editing.
    void setLabel(int key, std::string_view text);
    void setScheme(const KeyScheme& chosen);

    // The metronome.

    void chkRunning_Click(bool on);
    void setBeatsPerMinute(int beats);
    void setTone(bool on);
    [[nodiscard]] const cMetronome& metronome() const { return cMetronome1; }

    // Takes.

    enum class Recording : std::uint8_t { Off, WaitsForKey, On };
    /// `Label8` reads "ON" unless this is Off.
    [[nodiscard]] Recording recording() const { return recording_; }
    [[nodiscard]] bool isPlaying() const { return player_.isPlaying(); }
    [[nodiscard]] bool isPaused() const { return player_.Check6; }
    [[nodiscard]] bool loops() const { return player_.Check5; }
    void CmdRec_Click();
    void Check7_Click(); ///< play, or end it
    void Check4_Click(); ///< stop
    void Check6_Click(); ///< pause
    void setLoop(bool on);
    void setInsertPauses(bool on) { controls.Check3 = on; }

    /// What keeps "Save Recording as SNG file" from asking for a name.
    enum class Unsaveable : std::uint8_t { No, Recording, Nothing };
    [[nodiscard]] Unsaveable saveProblem() const;
    /// Writes the take as a score and forgets it. @return the reason in words if it failed, the take being
    /// there as before; blank otherwise
    [[nodiscard]] std::string SaveRecordingAsScore(const std::filesystem::path& path);
    /// The instrument that was chosen, or sent at load, last.
    [[nodiscard]] int program() const { return program_; }

    /// Whether the key sounds, as `showKey` tells it.
    [[nodiscard]] bool sounds(int key) const;
};

} // namespace velmora
