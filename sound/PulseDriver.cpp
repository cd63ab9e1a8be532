// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/SteadyClock.h"
#include "sound/AudioDriver.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <atomic>
#include <optional>

namespace velmora {

namespace {
constexpr pa_sample_spec kSpec{PA_SAMPLE_FLOAT32NE, kAudioRate, kAudioChannels};
constexpr std::size_t kFrameBytes = sizeof(float) * kAudioChannels;
constexpr double kGrowth = 1.5;      ///< of the buffer, when the server ran dry again
constexpr double kDryAgain = 30;     ///< seconds; after that it counts as a first time
constexpr double kGrowthPause = 0.1; ///< seconds in which the last growth may take effect
constexpr double kLargestBuffer = 0.12;

struct PulseLibrary : LateLibrary {
    PulseLibrary() : LateLibrary(kPulseLibrary) {}
    VELMORA_LATE_CALL(pa_context_connect);
    VELMORA_LATE_CALL(pa_context_disconnect);
    VELMORA_LATE_CALL(pa_context_get_state);
    VELMORA_LATE_CALL(pa_context_new_with_proplist);
    VELMORA_LATE_CALL(pa_context_set_state_callback);
    VELMORA_LATE_CALL(pa_context_unref);
    VELMORA_LATE_CALL(pa_operation_unref);
    VELMORA_LATE_CALL(pa_proplist_free);
    VELMORA_LATE_CALL(pa_proplist_new);
    VELMORA_LATE_CALL(pa_proplist_sets);
    VELMORA_LATE_CALL(pa_stream_begin_write);
    VELMORA_LATE_CALL(pa_stream_connect_playback);
    VELMORA_LATE_CALL(pa_stream_disconnect);
    VELMORA_LATE_CALL(pa_stream_get_state);
    VELMORA_LATE_CALL(pa_stream_get_timing_info);
    VELMORA_LATE_CALL(pa_stream_new);
    VELMORA_LATE_CALL(pa_stream_set_buffer_attr);
    VELMORA_LATE_CALL(pa_stream_set_latency_update_callback);
    VELMORA_LATE_CALL(pa_stream_set_state_callback);
    VELMORA_LATE_CALL(pa_stream_set_underflow_callback);
    VELMORA_LATE_CALL(pa_stream_set_write_callback);
    VELMORA_LATE_CALL(pa_stream_unref);
    VELMORA_LATE_CALL(pa_stream_writable_size);
    VELMORA_LATE_CALL(pa_stream_write);
    VELMORA_LATE_CALL(pa_threaded_mainloop_free);
    VELMORA_LATE_CALL(pa_threaded_mainloop_get_api);
    VELMORA_LATE_CALL(pa_threaded_mainloop_new);
    VELMORA_LATE_CALL(pa_threaded_mainloop_set_name);
    VELMORA_LATE_CALL(pa_threaded_mainloop_start);
    VELMORA_LATE_CALL(pa_threaded_mainloop_stop);
    VELMORA_LATE_CALL(pa_timeval_age);
    VELMORA_LATE_CALL(pa_usec_to_bytes);
};

const PulseLibrary& pulse() {
    static const PulseLibrary library;
    return library;
}

/// All callbacks come from the main loop's thread, which `stop` ends before it takes anything down: none of
/// them needs the main loop's lock, and nobody else ever holds it.
class PulseDriver final : public AudioDriver {
public:
    explicit PulseDriver(const StreamSettings& settings) : buffer_(settings.buffer) {}
    ~PulseDriver() override { stop(); }

    void start(StreamClient& client) override;
    void stop() override;
    [[nodiscard]] StreamState state() const override { return state_.load(); }

private:
    [[nodiscard]] bool connect();
    [[nodiscard]] bool openStream();
    [[nodiscard]] pa_buffer_attr attributes() const;
    void change(StreamState state);
    void contextChanged();
    void streamChanged();
    void serve();
    [[nodiscard]] bool writePiece(std::size_t bytes, double called);
    void timingReported();
    void wentDry();
    void enlargeBuffer();

    StreamClient* client_ = nullptr;
    pa_threaded_mainloop* loop_ = nullptr;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    std::atomic<StreamState> state_{StreamState::Connecting};
    double buffer_;
    std::int64_t written_ = 0;
    std::optional<double> heardOrigin_; ///< steady seconds at which frame 0 was heard, by the last report
    double lastDry_ = -kDryAgain;       ///< steady seconds, as is the next
    double lastGrown_ = 0;
};

void PulseDriver::start(StreamClient& client) {
    client_ = &client;
    if (!pulse().complete() || !connect()) {
        change(StreamState::Failed);
    }
}

bool PulseDriver::connect() {
    loop_ = pulse().pa_threaded_mainloop_new();
    if (loop_ == nullptr) {
        return false;
    }
    pulse().pa_threaded_mainloop_set_name(loop_, "audio");
    pa_proplist* properties = pulse().pa_proplist_new();
    pulse().pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Velmora");
    pulse().pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "velmora");
    pulse().pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "music");
    context_ = pulse().pa_context_new_with_proplist(pulse().pa_threaded_mainloop_get_api(loop_), "Velmora",
                                                    properties);
    pulse().pa_proplist_free(properties);
    if (context_ == nullptr) {
        return false;
    }
    pulse().pa_context_set_state_callback(
        context_, [](pa_context*, void* self) { static_cast<PulseDriver*>(self)->contextChanged(); }, this);
    // The loop's thread does not run yet, so no lock is needed.
    return pulse().pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0 &&
           pulse().pa_threaded_mainloop_start(loop_) >= 0;
}

void PulseDriver::stop() {
    if (loop_ != nullptr) {
        pulse().pa_threaded_mainloop_stop(loop_);
    }
    if (stream_ != nullptr) {
        pulse().pa_stream_set_state_callback(stream_, nullptr, nullptr);
        pulse().pa_stream_set_write_callback(stream_, nullptr, nullptr);
        pulse().pa_stream_set_underflow_callback(stream_, nullptr, nullptr);
        pulse().pa_stream_set_latency_update_callback(stream_, nullptr, nullptr);
        pulse().pa_stream_disconnect(stream_);
        pulse().pa_stream_unref(stream_);
        stream_ = nullptr;
    }
    if (context_ != nullptr) {
        pulse().pa_context_set_state_callback(context_, nullptr, nullptr);
        pulse().pa_context_disconnect(context_);
        pulse().pa_context_unref(context_);
        context_ = nullptr;
    }
    if (loop_ != nullptr) {
        pulse().pa_threaded_mainloop_free(loop_);
        loop_ = nullptr;
    }
}

void PulseDriver::change(StreamState state) {
    // Failed is for good.
    if (state_.load() != StreamState::Failed && state_.exchange(state) != state) {
        client_->stateChanged();
    }
}

void PulseDriver::contextChanged() {
    const pa_context_state_t state = pulse().pa_context_get_state(context_);
    if (!PA_CONTEXT_IS_GOOD(state) || (state == PA_CONTEXT_READY && !openStream())) {
        change(StreamState::Failed);
    }
}

void PulseDriver::streamChanged() {
    if (!PA_STREAM_IS_GOOD(pulse().pa_stream_get_state(stream_))) {
        change(StreamState::Failed);
    }
}

pa_buffer_attr PulseDriver::attributes() const {
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    pa_buffer_attr attributes{};
    attributes.maxlength = kServersChoice;
    attributes.tlength =
        static_cast<std::uint32_t>(pulse().pa_usec_to_bytes(static_cast<pa_usec_t>(buffer_ * 1e6), &kSpec));
    // No pause to fill up after the server has run dry: the place of what comes next stays where it was in
    // time.
    attributes.prebuf = 0;
    attributes.minreq = kServersChoice;
    attributes.fragsize = kServersChoice;
    return attributes;
}

bool PulseDriver::openStream() {
    stream_ = pulse().pa_stream_new(context_, "Velmora", &kSpec, nullptr);
    if (stream_ == nullptr) {
        return false;
    }
    pulse().pa_stream_set_state_callback(
        stream_, [](pa_stream*, void* self) { static_cast<PulseDriver*>(self)->streamChanged(); }, this);
    pulse().pa_stream_set_write_callback(
        stream_, [](pa_stream*, std::size_t, void* self) { static_cast<PulseDriver*>(self)->serve(); }, this);
    pulse().pa_stream_set_underflow_callback(
        stream_, [](pa_stream*, void* self) { static_cast<PulseDriver*>(self)->wentDry(); }, this);
    pulse().pa_stream_set_latency_update_callback(
        stream_, [](pa_stream*, void* self) { static_cast<PulseDriver*>(self)->timingReported(); }, this);
    const pa_buffer_attr wanted = attributes();
    constexpr int kFlags = PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE;
    return pulse().pa_stream_connect_playback(stream_, nullptr, &wanted,
                                              static_cast<pa_stream_flags_t>(kFlags), nullptr, nullptr) >= 0;
}

/// Fills all the room there is. That the server asks a second time shows that the device takes sound; the
/// first time it only fills its buffer, even on a device that is suspended.
void PulseDriver::serve() {
    const double called = steadySeconds();
    if (written_ > 0) {
        change(StreamState::Running);
    }
    for (;;) {
        const std::size_t room = pulse().pa_stream_writable_size(stream_);
        if (room == static_cast<std::size_t>(-1) || room < kFrameBytes) {
            return;
        }
        if (!writePiece(room, called)) {
            change(StreamState::Failed);
            return;
        }
    }
}

bool PulseDriver::writePiece(std::size_t bytes, double called) {
    void* data = nullptr;
    if (pulse().pa_stream_begin_write(stream_, &data, &bytes) < 0 || data == nullptr || bytes < kFrameBytes) {
        return false;
    }
    const auto frames = static_cast<int>(bytes / kFrameBytes);
    const double ahead =
        heardOrigin_ ? *heardOrigin_ + static_cast<double>(written_) / kAudioRate - called : 0;
    client_->render({static_cast<float*>(data), frames, written_, called, std::max(ahead, 0.0)});
    written_ += frames;
    return pulse().pa_stream_write(stream_, data, static_cast<std::size_t>(frames) * kFrameBytes, nullptr, 0,
                                   PA_SEEK_RELATIVE) >= 0;
}

/// The library's own interpolation is off by 100 ms for a minute after a server stood still; one line through
/// the last report is exact enough.
void PulseDriver::timingReported() {
    const pa_timing_info* const info = pulse().pa_stream_get_timing_info(stream_);
    if (info != nullptr && info->playing != 0 && info->read_index_corrupt == 0) {
        const double reported =
            steadySeconds() - static_cast<double>(pulse().pa_timeval_age(&info->timestamp)) * 1e-6;
        const double frame = static_cast<double>(info->read_index) / kFrameBytes;
        heardOrigin_ = reported + static_cast<double>(info->sink_usec) * 1e-6 - frame / kAudioRate;
    }
}

/// Once is an accident that no buffer prevents, such as a machine that slept. Twice is a buffer too small.
void PulseDriver::wentDry() {
    if (state_.load() != StreamState::Running) {
        return; // a stream is dry before its first piece arrives
    }
    client_->ranDry();
    const double now = steadySeconds();
    if (now - lastDry_ < kDryAgain && now - lastGrown_ > kGrowthPause && buffer_ < kLargestBuffer) {
        enlargeBuffer();
        lastGrown_ = now;
    }
    lastDry_ = now;
}

void PulseDriver::enlargeBuffer() {
    buffer_ = std::min(buffer_ * kGrowth, kLargestBuffer);
    const pa_buffer_attr wanted = attributes();
    if (pa_operation* operation = pulse().pa_stream_set_buffer_attr(stream_, &wanted, nullptr, nullptr)) {
        pulse().pa_operation_unref(operation);
    }
}
} // namespace

std::unique_ptr<AudioDriver> makePulseDriver(const StreamSettings& settings) {
    return std::make_unique<PulseDriver>(settings);
}

} // namespace velmora
