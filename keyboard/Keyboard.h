// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "keyboard/ComputerKey.h"
#include "keyboard/KeyScheme.h"
#include "keyboard/KeyVoice.h"
#include "keyboard/KeyboardControls.h"
#include "keyboard/KeyboardSound.h"
#include "keyboard/KeyboardView.h"
#include "keyboard/MidiSource.h"
#include "keyboard/Take.h"
#include "keyboard/TakePlayer.h"
#include "keyboard/TakeRecorder.h"
#include "keyboard/cMetronome.h"
#include "sound/SetupState.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

class MessageLoop;
class MidiPort;
struct Manners;

/// The keyboard without its window: presses come in, short messages go out through the port. Nothing of it
/// waits; what is due later, a strummed note, a sample of a take, a step of playing, a beat, is done by
/// `runDue` at the moment that `nextDue` gives. A strike sends the root's note-on first and allocates
/// nothing.
///
/// In classic manners a release sends the note-offs of the key under the present octave and chord, so that
/// notes go on sounding where these were changed meanwhile, or the space bar went up first.
class Keyboard final : private TakeSound {
public:
    static constexpr int kVelocity = KeyVoice::kVelocity;
    static constexpr int kMetronomeChannel = 14;

    /// All that is referred to outlives the keyboard.
    Keyboard(MidiPort& port, const MessageLoop& clock, PerChannel<PlaybackChannelSetup>& channels,
             const Manners& manners);
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    [[nodiscard]] const KeyScheme& scheme() const { return scheme_; }
    [[nodiscard]] const KeyboardControls& controls() const { return controls_; }
    Take take;

    /// Who shows it, until it is called with null.
    void setView(KeyboardView* view) { view_ = view; }
    /// Who keeps what is played, likewise.
    void setPlayedNotes(PlayedNotes* played) { sound_.played = played; }

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
    /// Every key of the computer and of the mouse goes up: the focus is gone, say.
    void releaseKeys();
    /// These and the keys of MIDI inputs.
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

    /// `Label8` reads "ON" unless this is Off.
    [[nodiscard]] TakeRecorder::State recording() const { return recorder_.state(); }
    [[nodiscard]] bool isPlaying() const { return player_.isPlaying(); }
    [[nodiscard]] bool isPaused() const { return player_.Check6; }
    [[nodiscard]] bool loops() const { return player_.Check5; }
    [[nodiscard]] bool isStrumming() const { return voice_.isStrumming(); }
    void CmdRec_Click();
    void Check7_Click(); ///< play, or end it
    void Check4_Click(); ///< stop
    void Check6_Click(); ///< pause
    void setLoop(bool on);
    void setInsertPauses(bool on) { controls_.Check3 = on; }

    /// What keeps "Save Recording as SNG file" from asking for a name.
    enum class Unsaveable : std::uint8_t { No, Recording, Nothing };
    [[nodiscard]] Unsaveable saveProblem() const;
    /// Writes the take as a score and forgets it. @return the reason in words if it failed, the take being
    /// there as before; blank otherwise
    [[nodiscard]] std::string SaveRecordingAsScore(const std::filesystem::path& path);
    /// The instrument that was chosen, or sent at load, last.
    [[nodiscard]] int program() const { return sound_.program; }

    /// Whether the key sounds, as `showKey` tells it.
    [[nodiscard]] bool sounds(int key) const;

private:
    /// A kind of work that is due at moments of its own. Those of one moment are done in this order.
    enum class Work : std::uint8_t { Strum, Sample, Play, Beat };
    [[nodiscard]] std::optional<std::pair<double, Work>> next() const;
    void run(double due, Work work);
    /// Does what was due before now: what comes in at a moment counts before what is due then.
    void catchUp();

    void strikeRow(int row) override;
    void releaseRow(int row) override;
    void showPosition(int position) override;
    void playingEnded() override;

    [[nodiscard]] PlaybackChannelSetup& record() { return channels_[controls_.SoundChannel]; }
    [[nodiscard]] double tickSeconds() const { return controls_.Text2 * 0.001; }
    void releaseComputerKeys();
    void strike(int key, std::string_view text, const ComputerKey& by);
    void noteRow(int row);
    [[nodiscard]] bool strikeByText(std::string_view text, const ComputerKey& by);
    void apply(KeyboardSlider slider, double value);
    void setSound(KeyboardSlider slider, int value);
    void chooseChannel(int channel);
    void endBeat();
    void beat(int number);
    void showTransport();
    void refreshKeys();
    [[nodiscard]] int keyOfNote(int note) const;

    const MessageLoop& clock_;
    PerChannel<PlaybackChannelSetup>& channels_;
    const Manners& manners_;
    KeyScheme scheme_ = KeyScheme::builtIn();
    KeyboardControls controls_;
    KeyboardView* view_ = nullptr;
    KeyboardSound sound_;
    KeyVoice voice_;
    TakeRecorder recorder_;
    TakePlayer player_;
    cMetronome cMetronome1;
    std::vector<int> down_;                         ///< positions of the computer's keys that are down
    std::vector<MidiSource> sources_;               ///< MIDI inputs that have sent something
    std::array<bool, kPianoKeys> shown_{};          ///< what `showKey` was told last
    std::optional<std::pair<int, int>> playedNote_; ///< channel and note that playing sounds
    std::optional<int> beatNote_;                   ///< that the metronome sounds
    bool unloading_ = false;
};

} // namespace velmora
