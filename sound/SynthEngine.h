// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

/// When the samples of an instrument come from the disk.
enum class PresetLoading {
    WhenChosen, ///< in `apply` of the program change: for work that may wait
    Ahead,      ///< in `prepare`, so that `apply` touches no disk: for live sound
};

struct SynthOptions {
    std::filesystem::path soundFont;
    int sampleRate = 44100; ///< frames per second, 8000 to 96000
    int cores = 1;          ///< threads that calculate voices; any number gives the same samples
    PresetLoading presets = PresetLoading::WhenChosen;
};

/// One FluidSynth synthesizer with one SoundFont whose samples are read as instruments are chosen. Gain,
/// reverb, chorus, interpolation and polyphony are FluidSynth's own defaults.
///
/// `apply`, `reset`, `render` and `voicesSounding` belong to one thread at a time.
class SynthEngine {
public:
    /// Messages take effect at multiples of this many frames: split rendering there to place them exactly.
    static constexpr int kGridFrames = 64;
    static constexpr int kDrumBank = 128;

    struct Created {
        std::unique_ptr<SynthEngine> engine; ///< none if it failed
        std::string error;                   ///< why, with the name of the file
    };
    /// Reads the SoundFont's tables and makes the synthesizer; takes some tens of milliseconds.
    [[nodiscard]] static Created create(const SynthOptions& options);
    ~SynthEngine();
    SynthEngine(const SynthEngine&) = delete;
    SynthEngine& operator=(const SynthEngine&) = delete;

    /// Takes a packed short message at the next grid point. What is no channel message is ignored, and so are
    /// a note-off for a note that is silent and a program change to a preset whose samples aren't there: with
    /// PresetLoading::Ahead one that was never prepared, otherwise one that can't be read.
    ///
    /// False, with PresetLoading::Ahead alone, if the word is a program change and `prepare` is at work just
    /// now: nothing has happened, try again a grid point later. Choosing a preset and loading one both count
    /// the users of each sample, unprotected, so the two must never meet; but the audio thread can't wait for
    /// a disk. Therefore it only tries the flag that both take. Realtime-safe: with PresetLoading::Ahead yes,
    /// otherwise no.
    bool apply(std::uint32_t word);

    /// With PresetLoading::Ahead, loads the samples of a preset; at once if they are there already. They stay
    /// until the engine ends. A preset that the SoundFont lacks is replaced as the program change will
    /// replace it: by that program of bank 0, then by program 0.
    /// @param bank 0 to 127, or kDrumBank
    /// @param program 0 to 127
    /// Thread-safe: beside the audio thread's calls, yes; several threads must take turns. Realtime-safe: no.
    void prepare(int bank, int program);

    /// Ends every sounding note as its key's release would: what rings, rings out. Sustain and sostenuto
    /// pedals come up; instruments and all other controllers stay as they are. Realtime-safe: yes.
    void reset();

    /// Writes the next @p frames frames of interleaved stereo over @p samples (2 * frames values). Any number
    /// is possible; multiples of kGridFrames keep messages exact, up to 4096 at once are quickest.
    /// Realtime-safe: yes with one core.
    void render(float* samples, int frames);

    /// Voices that sound or ring out, as of the last message or rendered block. Realtime-safe: yes.
    [[nodiscard]] int voicesSounding();

private:
    struct Parts;
    explicit SynthEngine(std::unique_ptr<Parts> parts);
    bool changeProgram(int channel, int program);

    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
