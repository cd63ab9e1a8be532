// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/SteadyClock.h"
#include "sound/AudioDriver.h"

#include <SDL2/SDL.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <filesystem>
#include <string>
#include <system_error>

namespace velmora {

namespace {
struct SdlLibrary : LateLibrary {
    SdlLibrary() : LateLibrary(kSdlLibrary) {}
    VELMORA_LATE_CALL(SDL_AudioInit);
    VELMORA_LATE_CALL(SDL_AudioQuit);
    VELMORA_LATE_CALL(SDL_CloseAudioDevice);
    VELMORA_LATE_CALL(SDL_GetAudioDeviceStatus);
    VELMORA_LATE_CALL(SDL_OpenAudioDevice);
    VELMORA_LATE_CALL(SDL_PauseAudioDevice);
    VELMORA_LATE_CALL(SDL_SetHint);
    VELMORA_LATE_CALL(SDL_TLSCleanup);
};

const SdlLibrary& sdl() {
    static const SdlLibrary library;
    return library;
}

/// SDL_AudioInit and SDL_OpenAudioDevice alone: SDL_Init would also bring up events, and they take over
/// signals.
class SdlDriver final : public AudioDriver {
public:
    SdlDriver(std::string system, const StreamSettings& settings)
        : system_(std::move(system))
        , buffer_(settings.buffer) {}
    ~SdlDriver() override { stop(); }

    void start(StreamClient& client) override {
        client_ = &client;
        if (!sdl().complete()) {
            state_.store(StreamState::Failed);
            return;
        }
        sdl().SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        isUp_ = sdl().SDL_AudioInit(system_.c_str()) == 0;
        if (isUp_) {
            open();
        }
        if (device_ == 0) {
            state_.store(StreamState::Failed);
        }
    }

    void stop() override {
        if (!sdl().complete()) {
            return;
        }
        if (device_ != 0) {
            sdl().SDL_CloseAudioDevice(device_);
            device_ = 0;
        }
        if (isUp_) {
            sdl().SDL_AudioQuit();
            isUp_ = false;
        }
        sdl().SDL_TLSCleanup(); // this thread's error text, which SDL frees only for threads of its own
    }

    [[nodiscard]] StreamState state() const override {
        // SDL stops a device that was pulled out, and tells nobody who doesn't run its event loop.
        const bool isGone = device_ != 0 && sdl().SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED;
        return isGone ? StreamState::Failed : state_.load();
    }

private:
    void open() {
        SDL_AudioSpec wanted{};
        wanted.freq = kAudioRate;
        wanted.format = AUDIO_F32SYS;
        wanted.channels = kAudioChannels;
        // SDL keeps two periods of a power of two.
        wanted.samples =
            std::bit_floor(static_cast<Uint16>(std::clamp(buffer_ / 2 * kAudioRate, 64.0, 4096.0)));
        wanted.callback = [](void* self, Uint8* bytes, int size) {
            static_cast<SdlDriver*>(self)->fill(bytes, size);
        };
        wanted.userdata = this;
        period_ = static_cast<double>(wanted.samples) / kAudioRate;
        device_ = sdl().SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
        if (device_ != 0) {
            sdl().SDL_PauseAudioDevice(device_, 0);
        }
    }

    void fill(Uint8* bytes, int size) {
        const int frames = size / static_cast<int>(sizeof(float) * kAudioChannels);
        // What is rendered now is played after the period that plays now.
        client_->render({reinterpret_cast<float*>(bytes), frames, written_, steadySeconds(), period_});
        written_ += frames;
        if (state_.exchange(StreamState::Running) != StreamState::Running) {
            client_->stateChanged();
        }
    }

    std::string system_;
    double buffer_;
    double period_ = 0;
    StreamClient* client_ = nullptr;
    SDL_AudioDeviceID device_ = 0;
    bool isUp_ = false;
    std::int64_t written_ = 0;
    std::atomic<StreamState> state_{StreamState::Connecting};
};

/// True if there is a playback device of ALSA's own. Without one, "default" can only be a way to a sound
/// server, which is the driver above's business (and that way would start a server unasked).
bool hasPlaybackDevice() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/snd", error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("pcm") && name.ends_with('p')) {
            return true;
        }
    }
    return false;
}

class NoDevice final : public AudioDriver {
public:
    void start(StreamClient&) override {}
    void stop() override {}
    [[nodiscard]] StreamState state() const override { return StreamState::Failed; }
};
} // namespace

std::unique_ptr<AudioDriver> makeSdlDriver(const std::string& system, const StreamSettings& settings) {
    return std::make_unique<SdlDriver>(system, settings);
}

std::unique_ptr<AudioDriver> makeAlsaDriver(const StreamSettings& settings) {
    return hasPlaybackDevice() ? makeSdlDriver("alsa", settings) : std::make_unique<NoDevice>();
}

} // namespace velmora
