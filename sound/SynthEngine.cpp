// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/SynthEngine.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "sound/ShortMessage.h"
#include "sound/TeamOfOne.h"

#include <fluidsynth.h>

#include <array>
#include <atomic>
#include <fstream>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>

namespace velmora {

namespace {
constexpr int kPrograms = 128;
/// Twice FluidSynth's own: a piece of a few voices is no whisper, and what a dense one has too much the
/// limiter takes.
constexpr double kGain = 0.4;
constexpr int kBanks = SynthEngine::kDrumBank + 1;

struct Preset {
    int bank;
    int program;
};
enum class Samples : std::uint8_t { NotAskedFor, Loaded, Unreadable };

struct FluidLibrary : LateLibrary {
    FluidLibrary() : LateLibrary(kFluidSynthLibrary) {}
    VELMORA_LATE_CALL(delete_fluid_settings);
    VELMORA_LATE_CALL(delete_fluid_synth);
    VELMORA_LATE_CALL(fluid_set_log_function);
    VELMORA_LATE_CALL(fluid_settings_setint);
    VELMORA_LATE_CALL(fluid_settings_setnum);
    VELMORA_LATE_CALL(fluid_sfont_get_preset);
    VELMORA_LATE_CALL(fluid_synth_add_sfont);
    VELMORA_LATE_CALL(fluid_synth_all_notes_off);
    VELMORA_LATE_CALL(fluid_synth_cc);
    VELMORA_LATE_CALL(fluid_synth_channel_pressure);
    VELMORA_LATE_CALL(fluid_synth_get_active_voice_count);
    VELMORA_LATE_CALL(fluid_synth_get_program);
    VELMORA_LATE_CALL(fluid_synth_get_sfont_by_id);
    VELMORA_LATE_CALL(fluid_synth_key_pressure);
    VELMORA_LATE_CALL(fluid_synth_noteoff);
    VELMORA_LATE_CALL(fluid_synth_noteon);
    VELMORA_LATE_CALL(fluid_synth_pin_preset);
    VELMORA_LATE_CALL(fluid_synth_pitch_bend);
    VELMORA_LATE_CALL(fluid_synth_program_change);
    VELMORA_LATE_CALL(fluid_synth_remove_sfont);
    VELMORA_LATE_CALL(fluid_synth_sfload);
    VELMORA_LATE_CALL(fluid_synth_write_float);
    VELMORA_LATE_CALL(new_fluid_settings);
    VELMORA_LATE_CALL(new_fluid_synth);
};

/// `SynthEngine::create` calls it first, so that the audio thread finds it loaded.
const FluidLibrary& fluid() {
    static const FluidLibrary library;
    return library;
}

struct Deleter {
    void operator()(fluid_settings_t* settings) const { fluid().delete_fluid_settings(settings); }
    void operator()(fluid_synth_t* synth) const { fluid().delete_fluid_synth(synth); }
};
using Settings = std::unique_ptr<fluid_settings_t, Deleter>;
using Synth = std::unique_ptr<fluid_synth_t, Deleter>;

/// FluidSynth prints on the terminal by default, from any thread; a window has its own way to tell the user.
void muteLog() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (int level = 0; level < LAST_LOG_LEVEL; ++level)
            fluid().fluid_set_log_function(level, nullptr, nullptr);
    });
}

Settings makeSettings(const SynthOptions& options) {
    Settings settings(fluid().new_fluid_settings());
    if (!settings)
        return settings;
    fluid().fluid_settings_setnum(settings.get(), "synth.sample-rate", options.sampleRate);
    fluid().fluid_settings_setnum(settings.get(), "synth.gain", kGain);
    fluid().fluid_settings_setint(settings.get(), "synth.cpu-cores", options.cores);
    fluid().fluid_settings_setint(settings.get(), "synth.dynamic-sample-loading", 1);
    fluid().fluid_settings_setint(settings.get(), "synth.threadsafe-api", 0); // it works by locking
    // An audio thread must never wait for a page; for a file, locking each sample only takes time.
    fluid().fluid_settings_setint(settings.get(), "synth.lock-memory",
                                  options.presets == PresetLoading::Ahead);
    return settings;
}

/// The least that can hold a SoundFont: it never sounds.
Settings makeKeeperSettings() {
    Settings settings = makeSettings({.soundFont = {}});
    if (!settings)
        return settings;
    fluid().fluid_settings_setint(settings.get(), "synth.polyphony", 1);
    fluid().fluid_settings_setint(settings.get(), "synth.reverb.active", 0);
    fluid().fluid_settings_setint(settings.get(), "synth.chorus.active", 0);
    return settings;
}

/// Looks at the outermost chunk only. FluidSynth passes what it doesn't know on to loaders of other formats,
/// some of which print on the terminal.
std::string whyNoSoundFont(const std::filesystem::path& file) {
    const std::string name = "\"" + file.string() + "\"";
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status))
        return "The SoundFont " + name + " is not there.";
    if (!std::filesystem::is_regular_file(status)) // a pipe could block, a device never end
        return "The file " + name + " is not a SoundFont.";
    std::array<char, 12> head{};
    if (!std::ifstream(file, std::ios::binary).read(head.data(), head.size()))
        return "The SoundFont " + name + " can't be read.";
    const std::string_view text(head.data(), head.size());
    if (!text.starts_with("RIFF") || !text.ends_with("sfbk"))
        return "The file " + name + " is not a SoundFont.";
    std::uintmax_t length = 8;
    for (std::size_t i = 0; i < 4; ++i)
        length += std::uintmax_t{static_cast<unsigned char>(head[4 + i])} << (8 * i);
    if (std::filesystem::file_size(file, error) < length)
        return "The SoundFont " + name + " is cut short.";
    return {};
}
} // namespace

struct SynthEngine::Parts {
    Settings settings;
    Synth synth;
    fluid_sfont_t* soundFont = nullptr; ///< owned by synth
    int soundFontId = FLUID_FAILED;

    // A second, mute synthesizer that shares the SoundFont and does nothing but pin presets. Calls of
    // FluidSynth on one synthesizer must not overlap; with a keeper of its own the loading thread never
    // enters the one that the audio thread plays, and only program changes have to keep clear of it.
    Settings keeperSettings;
    Synth keeper;
    std::array<std::atomic<Samples>, std::size_t{kBanks} * kPrograms> samples{};
    std::atomic_flag presetsBusy;

    Parts() = default;
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;
    ~Parts() {
        if (keeper && soundFont)
            fluid().fluid_synth_remove_sfont(keeper.get(), soundFont); // it isn't the keeper's to delete
    }

    [[nodiscard]] bool open(const SynthOptions& options);
    [[nodiscard]] bool openKeeper();
    [[nodiscard]] std::optional<Preset> resolved(Preset preset) const;
    [[nodiscard]] std::atomic<Samples>& samplesOf(Preset preset) {
        return samples[static_cast<std::size_t>(preset.bank) * kPrograms +
                       static_cast<std::size_t>(preset.program)];
    }
    bool load(Preset preset);
    void changeProgram(int channel, int program);
};

bool SynthEngine::Parts::open(const SynthOptions& options) {
    (void)teamsOfOneArePlainCalls();
    settings = makeSettings(options);
    if (settings)
        synth.reset(fluid().new_fluid_synth(settings.get()));
    if (!synth)
        return false;
    soundFontId = fluid().fluid_synth_sfload(synth.get(), options.soundFont.c_str(), 1);
    if (soundFontId == FLUID_FAILED)
        return false;
    soundFont = fluid().fluid_synth_get_sfont_by_id(synth.get(), soundFontId);
    if (options.presets == PresetLoading::Ahead && !openKeeper())
        return false;
    return load({0, 0}) && load({kDrumBank, 0}); // what a new synthesizer starts with
}

bool SynthEngine::Parts::openKeeper() {
    keeperSettings = makeKeeperSettings();
    if (keeperSettings)
        keeper.reset(fluid().new_fluid_synth(keeperSettings.get()));
    if (!keeper)
        return false;
    // Adding numbers the SoundFont anew; being the first in both, it keeps its number.
    return fluid().fluid_synth_add_sfont(keeper.get(), soundFont) == soundFontId;
}

/// The preset that FluidSynth takes for one that the SoundFont lacks; none if it has no such thing either.
std::optional<Preset> SynthEngine::Parts::resolved(Preset preset) const {
    const Preset sameProgram = {preset.bank == kDrumBank ? kDrumBank : 0, preset.program};
    const Preset first = {sameProgram.bank, 0};
    for (const Preset each : {preset, sameProgram, first}) {
        if (fluid().fluid_sfont_get_preset(soundFont, each.bank, each.program))
            return each;
    }
    return std::nullopt;
}

/// Loads what will sound for a preset. False if it can't be read.
bool SynthEngine::Parts::load(Preset preset) {
    const std::optional<Preset> found = resolved(preset);
    if (!found)
        return true; // such a channel is mute
    std::atomic<Samples>& state = samplesOf(*found);
    if (state.load(std::memory_order_relaxed) == Samples::NotAskedFor) {
        while (presetsBusy.test_and_set(std::memory_order_acquire))
            std::this_thread::yield(); // the audio thread is in the midst of a program change: some
                                       // microseconds
        fluid_synth_t* pinner = keeper ? keeper.get() : synth.get();
        const bool done =
            fluid().fluid_synth_pin_preset(pinner, soundFontId, found->bank, found->program) == FLUID_OK;
        presetsBusy.clear(std::memory_order_release);
        state.store(done ? Samples::Loaded : Samples::Unreadable, std::memory_order_release);
    }
    return state.load(std::memory_order_relaxed) == Samples::Loaded;
}

/// FluidSynth would play a preset without its samples, and crash.
void SynthEngine::Parts::changeProgram(int channel, int program) {
    int unused = 0;
    Preset preset{kDrumBank, program};
    if (channel != shortmessage::kDrumChannel)
        fluid().fluid_synth_get_program(synth.get(), channel, &unused, &preset.bank, &unused);
    if (!keeper)
        load(preset);
    const std::optional<Preset> found = resolved(preset);
    if (!found || samplesOf(*found).load(std::memory_order_acquire) == Samples::Loaded)
        fluid().fluid_synth_program_change(synth.get(), channel, program);
}

SynthEngine::SynthEngine(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
SynthEngine::~SynthEngine() = default;

SynthEngine::Created SynthEngine::create(const SynthOptions& options) {
    if (!fluid().complete())
        return {nullptr, "There is no synthesizer: " + fluid().problem()};
    muteLog();
    if (std::string error = whyNoSoundFont(options.soundFont); !error.empty())
        return {nullptr, std::move(error)};
    auto parts = std::make_unique<Parts>();
    if (!parts->open(options))
        return {nullptr, "The SoundFont \"" + options.soundFont.string() + "\" can't be loaded."};
    return {std::unique_ptr<SynthEngine>(new SynthEngine(std::move(parts))), {}};
}

bool SynthEngine::apply(std::uint32_t word) {
    if (!shortmessage::isValid(word))
        return true;
    fluid_synth_t* synth = parts_->synth.get();
    const int channel = shortmessage::channel(word);
    const int data1 = shortmessage::data1(word);
    const int data2 = shortmessage::data2(word);
    switch (shortmessage::status(word)) {
    case 0x80:
        fluid().fluid_synth_noteoff(synth, channel, data1);
        break;
    case 0x90:
        fluid().fluid_synth_noteon(synth, channel, data1, data2);
        break;
    case 0xA0:
        fluid().fluid_synth_key_pressure(synth, channel, data1, data2);
        break;
    case 0xB0:
        fluid().fluid_synth_cc(synth, channel, data1, data2);
        break;
    case 0xC0:
        return changeProgram(channel, data1);
    case 0xD0:
        fluid().fluid_synth_channel_pressure(synth, channel, data1);
        break;
    case 0xE0:
        fluid().fluid_synth_pitch_bend(synth, channel, data1 | data2 << 7);
        break;
    default:
        break;
    }
    return true;
}

bool SynthEngine::changeProgram(int channel, int program) {
    if (!parts_->keeper) {
        parts_->changeProgram(channel, program);
        return true;
    }
    if (parts_->presetsBusy.test_and_set(std::memory_order_acquire))
        return false;
    parts_->changeProgram(channel, program);
    parts_->presetsBusy.clear(std::memory_order_release);
    return true;
}

void SynthEngine::prepare(int bank, int program) {
    if (parts_->keeper && bank >= 0 && bank < kBanks && program >= 0 && program < kPrograms)
        parts_->load({bank, program});
}

void SynthEngine::reset() {
    constexpr int kSustain = 64;
    constexpr int kSostenuto = 66;
    fluid_synth_t* synth = parts_->synth.get();
    for (int channel = 0; channel < 16; ++channel) {
        fluid().fluid_synth_cc(synth, channel, kSustain, 0);
        fluid().fluid_synth_cc(synth, channel, kSostenuto, 0);
    }
    fluid().fluid_synth_all_notes_off(synth, -1);
}

void SynthEngine::render(float* samples, int frames) {
    fluid().fluid_synth_write_float(parts_->synth.get(), frames, samples, 0, 2, samples, 1, 2);
}

int SynthEngine::voicesSounding() {
    return fluid().fluid_synth_get_active_voice_count(parts_->synth.get());
}

} // namespace velmora
