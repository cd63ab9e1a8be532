// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SteadyClock.h"
#include "sound/AudioBell.h"
#include "sound/AudioDriver.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace velmora {

namespace {
using Clock = std::chrono::steady_clock;

constexpr int kBlockFrames = kAudioRate / 100;
constexpr std::chrono::milliseconds kBlockTime{10};
/// Later than this the process was held up from outside; catching up block by block would only be a burst.
constexpr std::chrono::milliseconds kHeldUp{250};

class NullDriver final : public AudioDriver {
public:
    ~NullDriver() override { stop(); }

    void start(StreamClient& client) override {
        client_ = &client;
        thread_ = std::thread([this, &client] { run(client); });
    }

    void stop() override {
        {
            const std::scoped_lock lock(mutex_);
            stopping_ = true;
        }
        stopped_.notify_all();
        if (AudioBell* const bell = client_ != nullptr ? client_->bell() : nullptr) {
            bell->ring();
        }
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    [[nodiscard]] StreamState state() const override { return StreamState::Running; }

private:
    void run(StreamClient& client) {
        std::array<float, std::size_t{kAudioChannels} * kBlockFrames> samples{};
        std::int64_t written = 0;
        // Absolute deadlines: a late wake-up shortens the next wait, so the rate holds.
        for (auto deadline = Clock::now() + kBlockTime; !stoppedBefore(deadline); deadline += kBlockTime) {
            if (Clock::now() - deadline > kHeldUp) {
                deadline = Clock::now();
                written = 0;
            }
            client.render({samples.data(), kBlockFrames, written, steadySeconds(), 0});
            written += kBlockFrames;
            if (restedWhileSilent(client)) {
                deadline = Clock::now();
                written = 0;
            }
        }
    }

    /// True if it has waited for the bell.
    [[nodiscard]] bool restedWhileSilent(StreamClient& client) {
        AudioBell* const bell = client.bell();
        if (bell == nullptr) {
            return false;
        }
        const unsigned heard = bell->rings();
        if (isStopping() || !client.isSilent()) {
            return false;
        }
        bell->waitBeyond(heard);
        return true;
    }

    [[nodiscard]] bool isStopping() {
        const std::scoped_lock lock(mutex_);
        return stopping_;
    }

    [[nodiscard]] bool stoppedBefore(Clock::time_point deadline) {
        std::unique_lock lock(mutex_);
        return stopped_.wait_until(lock, deadline, [this] { return stopping_; });
    }

    std::mutex mutex_;
    std::condition_variable stopped_;
    bool stopping_ = false;
    StreamClient* client_ = nullptr;
    std::thread thread_;
};
} // namespace

std::unique_ptr<AudioDriver> makeNullDriver(const StreamSettings&) {
    return std::make_unique<NullDriver>();
}

} // namespace velmora
