// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MonitorSource.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "sound/AudioDriver.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace velmora {

namespace {
constexpr pa_sample_spec kSpec{PA_SAMPLE_FLOAT32NE, kAudioRate, kAudioChannels};
constexpr pa_usec_t kFragment = 20'000; ///< microseconds of sound that come at once

struct PulseLibrary : LateLibrary {
    PulseLibrary() : LateLibrary(kPulseLibrary) {}
    VELMORA_LATE_CALL(pa_context_connect);
    VELMORA_LATE_CALL(pa_context_disconnect);
    VELMORA_LATE_CALL(pa_context_get_server_info);
    VELMORA_LATE_CALL(pa_context_get_sink_info_by_name);
    VELMORA_LATE_CALL(pa_context_get_state);
    VELMORA_LATE_CALL(pa_context_new_with_proplist);
    VELMORA_LATE_CALL(pa_context_set_state_callback);
    VELMORA_LATE_CALL(pa_context_unref);
    VELMORA_LATE_CALL(pa_operation_unref);
    VELMORA_LATE_CALL(pa_proplist_free);
    VELMORA_LATE_CALL(pa_proplist_new);
    VELMORA_LATE_CALL(pa_proplist_sets);
    VELMORA_LATE_CALL(pa_stream_connect_record);
    VELMORA_LATE_CALL(pa_stream_disconnect);
    VELMORA_LATE_CALL(pa_stream_drop);
    VELMORA_LATE_CALL(pa_stream_get_state);
    VELMORA_LATE_CALL(pa_stream_new);
    VELMORA_LATE_CALL(pa_stream_peek);
    VELMORA_LATE_CALL(pa_stream_set_read_callback);
    VELMORA_LATE_CALL(pa_stream_set_state_callback);
    VELMORA_LATE_CALL(pa_stream_unref);
    VELMORA_LATE_CALL(pa_threaded_mainloop_free);
    VELMORA_LATE_CALL(pa_threaded_mainloop_get_api);
    VELMORA_LATE_CALL(pa_threaded_mainloop_new);
    VELMORA_LATE_CALL(pa_threaded_mainloop_set_name);
    VELMORA_LATE_CALL(pa_threaded_mainloop_start);
    VELMORA_LATE_CALL(pa_threaded_mainloop_stop);
    VELMORA_LATE_CALL(pa_usec_to_bytes);
};

const PulseLibrary& pulse() {
    static const PulseLibrary library;
    return library;
}
} // namespace

/// As in the driver that plays, all callbacks come from the main loop's thread, which the end stops before it
/// takes anything down.
struct MonitorSource::Parts {
    enum class State : std::uint8_t { Connecting, Listening, Ended };

    explicit Parts(std::function<void(std::span<const float>)> whom) : heard(std::move(whom)) {
        if (!pulse().complete())
            end("What all programs play can't be recorded: " + pulse().problem() + ".");
        else if (!connect())
            end("There is no sound server whose sound could be recorded.");
    }
    ~Parts();
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    [[nodiscard]] bool connect();
    void contextChanged();
    void serverTold(const pa_server_info* info);
    void sinkTold(const pa_sink_info* info);
    [[nodiscard]] bool listen();
    void streamChanged();
    void read();
    void change(State to, std::string why);
    void end(std::string why) { change(State::Ended, std::move(why)); }
    /// Lets the operation go on by itself.
    void begun(pa_operation* operation) {
        if (operation != nullptr)
            pulse().pa_operation_unref(operation);
        else
            end("The sound server doesn't say what it plays to.");
    }

    std::function<void(std::span<const float>)> heard;
    pa_threaded_mainloop* loop = nullptr;
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;
    std::string sink;
    std::string monitor;
    bool sinkIsKnown = false;
    mutable std::mutex mutex;
    std::condition_variable changed;
    State state = State::Connecting;
    std::string problem;
};

bool MonitorSource::Parts::connect() {
    loop = pulse().pa_threaded_mainloop_new();
    if (loop == nullptr)
        return false;
    pulse().pa_threaded_mainloop_set_name(loop, "monitor");
    pa_proplist* properties = pulse().pa_proplist_new();
    pulse().pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Velmora");
    pulse().pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "velmora");
    context = pulse().pa_context_new_with_proplist(pulse().pa_threaded_mainloop_get_api(loop), "Velmora",
                                                   properties);
    pulse().pa_proplist_free(properties);
    if (context == nullptr)
        return false;
    pulse().pa_context_set_state_callback(
        context, [](pa_context*, void* self) { static_cast<Parts*>(self)->contextChanged(); }, this);
    // The loop's thread does not run yet, so no lock is needed.
    return pulse().pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0 &&
           pulse().pa_threaded_mainloop_start(loop) >= 0;
}

MonitorSource::Parts::~Parts() {
    if (loop != nullptr)
        pulse().pa_threaded_mainloop_stop(loop);
    if (stream != nullptr) {
        pulse().pa_stream_set_state_callback(stream, nullptr, nullptr);
        pulse().pa_stream_set_read_callback(stream, nullptr, nullptr);
        pulse().pa_stream_disconnect(stream);
        pulse().pa_stream_unref(stream);
    }
    if (context != nullptr) {
        pulse().pa_context_set_state_callback(context, nullptr, nullptr);
        pulse().pa_context_disconnect(context);
        pulse().pa_context_unref(context);
    }
    if (loop != nullptr)
        pulse().pa_threaded_mainloop_free(loop);
}

void MonitorSource::Parts::change(State to, std::string why) {
    {
        const std::lock_guard lock(mutex);
        if (state == State::Ended)
            return; // the first reason is the one
        state = to;
        problem = std::move(why);
    }
    changed.notify_all();
}

void MonitorSource::Parts::contextChanged() {
    const pa_context_state_t now = pulse().pa_context_get_state(context);
    if (!PA_CONTEXT_IS_GOOD(now)) {
        end(stream == nullptr ? "There is no sound server whose sound could be recorded."
                              : "The sound server is gone.");
    } else if (now == PA_CONTEXT_READY) {
        begun(pulse().pa_context_get_server_info(
            context,
            [](pa_context*, const pa_server_info* info, void* self) {
                static_cast<Parts*>(self)->serverTold(info);
            },
            this));
    }
}

void MonitorSource::Parts::serverTold(const pa_server_info* info) {
    sink = info != nullptr && info->default_sink_name != nullptr ? info->default_sink_name : "";
    if (sink.empty()) {
        end("The sound server has no device that it plays to.");
        return;
    }
    begun(pulse().pa_context_get_sink_info_by_name(
        context, sink.c_str(),
        [](pa_context*, const pa_sink_info* told, int, void* self) {
            static_cast<Parts*>(self)->sinkTold(told);
        },
        this));
}

/// Called once with the sink, if it is there, and once more at the end of the answer.
void MonitorSource::Parts::sinkTold(const pa_sink_info* info) {
    if (info != nullptr) {
        sinkIsKnown = true;
        monitor = info->monitor_source_name != nullptr ? info->monitor_source_name : "";
    } else if (!sinkIsKnown || monitor.empty() || !listen()) {
        end("What \"" + sink + "\" plays can't be recorded.");
    }
}

bool MonitorSource::Parts::listen() {
    stream = pulse().pa_stream_new(context, "Recording", &kSpec, nullptr);
    if (stream == nullptr)
        return false;
    pulse().pa_stream_set_state_callback(
        stream, [](pa_stream*, void* self) { static_cast<Parts*>(self)->streamChanged(); }, this);
    pulse().pa_stream_set_read_callback(
        stream, [](pa_stream*, std::size_t, void* self) { static_cast<Parts*>(self)->read(); }, this);
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    pa_buffer_attr wanted{};
    wanted.maxlength = kServersChoice;
    wanted.fragsize = static_cast<std::uint32_t>(pulse().pa_usec_to_bytes(kFragment, &kSpec));
    // A stream that the server moves when the sink goes would land at a microphone.
    constexpr int kFlags = PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE;
    return pulse().pa_stream_connect_record(stream, monitor.c_str(), &wanted,
                                            static_cast<pa_stream_flags_t>(kFlags)) >= 0;
}

void MonitorSource::Parts::streamChanged() {
    const pa_stream_state_t now = pulse().pa_stream_get_state(stream);
    if (now == PA_STREAM_READY)
        change(State::Listening, {});
    else if (!PA_STREAM_IS_GOOD(now))
        end(PA_CONTEXT_IS_GOOD(pulse().pa_context_get_state(context))
                ? "The sound device \"" + sink + "\" is gone."
                : "The sound server is gone.");
}

void MonitorSource::Parts::read() {
    constexpr std::array<float, 2048> kSilence{};
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pulse().pa_stream_peek(stream, &data, &bytes) >= 0 && bytes > 0) {
        std::size_t values = bytes / sizeof(float);
        if (data != nullptr) {
            heard({static_cast<const float*>(data), values});
        } else { // a hole
            for (; values > 0; values -= std::min(values, kSilence.size()))
                heard(std::span(kSilence).first(std::min(values, kSilence.size())));
        }
        pulse().pa_stream_drop(stream);
    }
}

MonitorSource::MonitorSource(std::function<void(std::span<const float>)> heard)
    : parts_(std::make_unique<Parts>(std::move(heard))) {}
MonitorSource::~MonitorSource() = default;

std::string MonitorSource::waitUntilItListens(double seconds) {
    std::unique_lock lock(parts_->mutex);
    const auto isSettled = [this] { return parts_->state != Parts::State::Connecting; };
    return parts_->changed.wait_for(lock, std::chrono::duration<double>(seconds), isSettled)
               ? parts_->problem
               : "The sound server doesn't answer.";
}

std::string MonitorSource::problem() const {
    const std::lock_guard lock(parts_->mutex);
    return parts_->problem;
}

} // namespace velmora
