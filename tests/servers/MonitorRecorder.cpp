// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/servers/MonitorRecorder.h"

#include "tests/support/Waiting.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <stdexcept>

namespace velmora {

namespace {
constexpr double kRate = 44100;
constexpr pa_sample_spec kSpec{PA_SAMPLE_FLOAT32NE, 44100, 2};
} // namespace

MonitorRecorder::MonitorRecorder() : loop_(pa_threaded_mainloop_new()) {
    context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "recorder");
    pa_context_set_state_callback(
        context_, [](pa_context*, void* self) { static_cast<MonitorRecorder*>(self)->contextChanged(); },
        this);
    pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
    pa_threaded_mainloop_start(loop_);
    const auto settled = [this] {
        const std::scoped_lock lock(mutex_);
        return hasFailed_ || !samples_.empty();
    };
    if (!within(5, settled) || hasFailed_) {
        close();
        throw std::runtime_error("the sink's monitor can't be recorded");
    }
}

MonitorRecorder::~MonitorRecorder() {
    close();
}

void MonitorRecorder::close() {
    pa_threaded_mainloop_stop(loop_);
    if (stream_ != nullptr) {
        pa_stream_disconnect(stream_);
        pa_stream_unref(stream_);
    }
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    pa_threaded_mainloop_free(loop_);
}

void MonitorRecorder::contextChanged() {
    const pa_context_state_t state = pa_context_get_state(context_);
    if (state == PA_CONTEXT_READY) {
        stream_ = pa_stream_new(context_, "recorder", &kSpec, nullptr);
        pa_stream_set_read_callback(
            stream_, [](pa_stream*, std::size_t, void* self) { static_cast<MonitorRecorder*>(self)->read(); },
            this);
        constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
        const auto fragment = static_cast<std::uint32_t>(pa_usec_to_bytes(2000, &kSpec));
        const pa_buffer_attr wanted{kServersChoice, kServersChoice, kServersChoice, kServersChoice, fragment};
        pa_stream_connect_record(stream_, "out.monitor", &wanted, PA_STREAM_NOFLAGS);
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        const std::scoped_lock lock(mutex_);
        hasFailed_ = true;
    }
}

void MonitorRecorder::read() {
    const double now = steadySeconds();
    const std::scoped_lock lock(mutex_);
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(stream_, &data, &bytes) >= 0 && bytes > 0) {
        const std::size_t values = bytes / sizeof(float);
        if (data != nullptr) {
            const auto* const first = static_cast<const float*>(data);
            samples_.insert(samples_.end(), first, first + values);
        } else {
            samples_.resize(samples_.size() + values); // a hole
        }
        pa_stream_drop(stream_);
    }
    const double origin = now - static_cast<double>(samples_.size()) / 2 / kRate;
    origin_ = origin_ == 0 ? origin : std::min(origin_, origin);
}

std::vector<float> MonitorRecorder::samples() const {
    const std::scoped_lock lock(mutex_);
    return samples_;
}

std::size_t MonitorRecorder::frames() const {
    const std::scoped_lock lock(mutex_);
    return samples_.size() / 2;
}

double MonitorRecorder::arrivalOf(double frame) const {
    const std::scoped_lock lock(mutex_);
    return origin_ + frame / kRate;
}

} // namespace velmora
