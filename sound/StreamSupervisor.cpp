// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/StreamSupervisor.h"

#include "base/SteadyClock.h"
#include "sound/AudioMixer.h"

#include <algorithm>
#include <chrono>

namespace velmora {

namespace {
constexpr double kWatchStep = 0.05; ///< seconds between two looks while something is under way
} // namespace

/// A driver and its way to the mixer, which is open only while the driver is the running one.
class StreamSupervisor::Link : public StreamClient {
public:
    Link(StreamSupervisor& supervisor, std::size_t row)
        : row_(row)
        , opened_(steadySeconds())
        , supervisor_(supervisor)
        , driver_(supervisor.rows_[row].make(supervisor.settings_)) {
        driver_->start(*this);
    }
    ~Link() override { driver_->stop(); }

    void render(const StreamRequest& request) noexcept override {
        if (isLive_.load()) {
            supervisor_.mixer_.render(request);
        } else {
            std::fill_n(request.samples, kAudioChannels * request.frames, 0.0F);
        }
    }
    [[nodiscard]] bool isSilent() noexcept override {
        return isLive_.load() && supervisor_.mixer_.isSilent();
    }
    [[nodiscard]] AudioBell* bell() noexcept override { return &supervisor_.mixer_.bell; }
    void stateChanged() noexcept override { supervisor_.wake(); }
    void ranDry() noexcept override {
        if (isLive_.load()) {
            supervisor_.underruns_.fetch_add(1);
        }
    }

    void goLive() {
        liveSince_ = steadySeconds();
        isLive_.store(true);
    }
    [[nodiscard]] std::size_t row() const { return row_; }
    [[nodiscard]] double opened() const { return opened_; }
    [[nodiscard]] StreamState state() const { return driver_->state(); }
    [[nodiscard]] bool standsStill() const {
        return steadySeconds() - std::max(liveSince_, supervisor_.mixer_.lastCalled()) >
               supervisor_.times_.standstill;
    }

private:
    std::size_t row_;
    double opened_;
    double liveSince_ = 0;
    StreamSupervisor& supervisor_;
    std::atomic<bool> isLive_{false};
    std::unique_ptr<AudioDriver> driver_;
};

StreamSupervisor::StreamSupervisor(AudioMixer& mixer, std::span<const AudioDriverRow> rows,
                                   const StreamSettings& settings, const SupervisorTimes& times)
    : mixer_(mixer)
    , rows_(rows)
    , settings_(settings)
    , times_(times)
    , thread_([this] { run(); }) {}

StreamSupervisor::~StreamSupervisor() {
    {
        const std::scoped_lock lock(mutex_);
        ending_ = true;
    }
    news_.notify_all();
    thread_.join();
}

std::string_view StreamSupervisor::driver() const noexcept {
    const int row = liveRow_.load();
    return row < 0 ? std::string_view() : rows_[static_cast<std::size_t>(row)].name;
}

void StreamSupervisor::wake() noexcept {
    {
        const std::scoped_lock lock(mutex_);
        hasNews_ = true;
    }
    news_.notify_all();
}

void StreamSupervisor::run() {
    const double begin = steadySeconds();
    graceEnds_ = begin + times_.grace;
    lastTry_ = begin - times_.retry;
    do {
        const double now = steadySeconds();
        watchLive();
        watchCandidate(now);
        if (!live_ && (!candidate_ || now >= graceEnds_)) {
            fallBack();
        }
    } while (!endedAfterWaiting());
    candidate_.reset();
    live_.reset();
}

void StreamSupervisor::watchLive() {
    if (!live_ || live_->row() == lastRow()) {
        return; // the last row has nothing to fall back to
    }
    if (live_->state() == StreamState::Failed || live_->standsStill()) {
        live_.reset();
        // What runs on is more important than what may come: the rest of this look can take its time.
        fallBack();
    }
}

void StreamSupervisor::watchCandidate(double now) {
    if (!candidate_) {
        if (now - lastTry_ >= times_.retry) {
            tryFrom(0, now);
        }
    } else if (candidate_->state() == StreamState::Running) {
        goLive(std::move(candidate_));
    } else if (candidate_->state() == StreamState::Failed || now - candidate_->opened() > times_.answer) {
        tryFrom(candidate_->row() + 1, now);
    }
}

void StreamSupervisor::tryFrom(std::size_t row, double now) {
    candidate_.reset();
    lastTry_ = now;
    const std::size_t end = live_ ? live_->row() : lastRow();
    for (; row < end; ++row) {
        candidate_ = open(row);
        if (candidate_->state() != StreamState::Failed) {
            return;
        }
        candidate_.reset();
    }
}

void StreamSupervisor::fallBack() {
    goLive(open(lastRow()));
}

std::unique_ptr<StreamSupervisor::Link> StreamSupervisor::open(std::size_t row) {
    return std::make_unique<Link>(*this, row);
}

void StreamSupervisor::goLive(std::unique_ptr<Link> link) {
    live_.reset(); // its last callback is over before the next stream's first
    live_ = std::move(link);
    live_->goLive();
    liveRow_.store(static_cast<int>(live_->row()));
    openings_.fetch_add(1);
}

bool StreamSupervisor::endedAfterWaiting() {
    const double pause = live_ && !candidate_ ? times_.retry : kWatchStep;
    std::unique_lock lock(mutex_);
    news_.wait_for(lock, std::chrono::duration<double>(pause), [this] { return hasNews_ || ending_; });
    hasNews_ = false;
    return ending_;
}

} // namespace velmora
