// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

struct pa_context;
struct pa_stream;
struct pa_threaded_mainloop;

namespace velmora {

/// Records what the server's sink "out" plays, from its monitor. It asks for no latency, so it changes none.
class MonitorRecorder {
public:
    /// Returns once the recording runs; throws std::runtime_error if it doesn't.
    MonitorRecorder();
    ~MonitorRecorder();
    MonitorRecorder(const MonitorRecorder&) = delete;
    MonitorRecorder& operator=(const MonitorRecorder&) = delete;

    /// Interleaved stereo so far.
    [[nodiscard]] std::vector<float> samples() const;
    [[nodiscard]] std::size_t frames() const;
    /// Steady seconds at which a frame of the recording reached us, or would have, had it come alone.
    [[nodiscard]] double arrivalOf(double frame) const;

private:
    void close();
    void contextChanged();
    void read();

    pa_threaded_mainloop* loop_ = nullptr;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    mutable std::mutex mutex_;
    std::vector<float> samples_;
    double origin_ = 0; ///< least of (arrival - frame / rate) so far
    bool hasFailed_ = false;
};

} // namespace velmora
