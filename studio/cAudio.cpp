// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/cAudio.h"

#include "base/MessageLoop.h"
#include "base/SteadyClock.h"
#include "studio/Blanking.h"
#include "studio/Burner.h"
#include "studio/DiscImage.h"
#include "studio/DriveList.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace velmora {

namespace {
constexpr double kSingleSpeed = 176.4; ///< KB/s
constexpr double kLook = 0.02;         ///< seconds between two looks at what has come

/// Carries events from the thread that works to the one that waits for it. Of a progress the last word is
/// enough.
class EventQueue : public BurnEvents {
public:
    void Blanking(double share) override { put({&EventQueue::tellBlanking, share}, true); }
    void StartCaching(std::size_t track) override { put({&EventQueue::tellCaching, 0, 0, track}, false); }
    void CacheProgress(double track, double total) override {
        put({&EventQueue::tellCacheProgress, track, total}, true);
    }
    void StartWriting(std::size_t track) override { put({&EventQueue::tellWriting, 0, 0, track}, false); }
    void WriteProgress(double track, double total) override {
        put({&EventQueue::tellWriteProgress, track, total}, true);
    }
    void ClosingTrack() override { put({&EventQueue::tellClosingTrack}, false); }
    void ClosingSession() override { put({&EventQueue::tellClosingSession}, false); }
    void Comparing(double share) override { put({&EventQueue::tellComparing, share}, true); }
    void Finished() override { put({&EventQueue::tellFinished}, false); }

    void end() {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        come_.notify_all();
    }
    /// Tells what has come; false once that was all.
    bool deliver(BurnEvents& to) {
        std::vector<Event> events;
        bool ended = false;
        {
            const std::lock_guard lock(mutex_);
            events.swap(events_);
            ended = ended_;
        }
        for (const Event& event : events)
            event.tell(to, event);
        return !ended;
    }
    void waitForEnd(double seconds) {
        std::unique_lock lock(mutex_);
        come_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return ended_; });
    }

private:
    struct Event {
        void (*tell)(BurnEvents&, const Event&);
        double share = 0;
        double total = 0;
        std::size_t track = 0;
    };
    static void tellBlanking(BurnEvents& to, const Event& event) { to.Blanking(event.share); }
    static void tellCaching(BurnEvents& to, const Event& event) { to.StartCaching(event.track); }
    static void tellCacheProgress(BurnEvents& to, const Event& event) {
        to.CacheProgress(event.share, event.total);
    }
    static void tellWriting(BurnEvents& to, const Event& event) { to.StartWriting(event.track); }
    static void tellWriteProgress(BurnEvents& to, const Event& event) {
        to.WriteProgress(event.share, event.total);
    }
    static void tellClosingTrack(BurnEvents& to, const Event& /*event*/) { to.ClosingTrack(); }
    static void tellClosingSession(BurnEvents& to, const Event& /*event*/) { to.ClosingSession(); }
    static void tellComparing(BurnEvents& to, const Event& event) { to.Comparing(event.share); }
    static void tellFinished(BurnEvents& to, const Event& /*event*/) { to.Finished(); }

    void put(Event event, bool isProgress) {
        const std::lock_guard lock(mutex_);
        if (isProgress && !events_.empty() && events_.back().tell == event.tell)
            events_.back() = event;
        else
            events_.push_back(event);
    }

    std::mutex mutex_;
    std::condition_variable come_;
    std::vector<Event> events_;
    bool ended_ = false;
};

/// Lets time pass for the caller until there may be something to tell.
void passTime(MessageLoop* loop, EventQueue& queue) {
    if (!loop)
        return queue.waitForEnd(kLook);
    const double began = steadySeconds();
    loop->serveUntil(loop->now() + kLook);
    if (steadySeconds() - began <
        kLook / 2) // a clock that jumps, or a program that ends: nothing waits there
        queue.waitForEnd(kLook / 2);
}

template<class Work>
auto onThread(MessageLoop* loop, BurnEvents& events, Work work) {
    EventQueue queue;
    std::optional<decltype(work(queue))> result;
    std::thread worker([&] {
        result.emplace(work(queue));
        queue.end();
    });
    while (queue.deliver(events))
        passTime(loop, queue);
    worker.join();
    return std::move(*result);
}

BurnOutcome burnImage(const CdTracks& tracks, const std::filesystem::path& image, BurnEvents& events,
                      const std::stop_token& cancel) {
    std::optional<std::size_t> writing;
    const auto written = [&](std::size_t track, double share, double total) {
        if (writing != track)
            events.StartWriting(track);
        writing = track;
        events.WriteProgress(share, total);
    };
    const auto compared = [&](std::size_t /*track*/, double /*share*/, double total) {
        events.Comparing(total);
    };
    const SectorOutcome outcome = writeImage(tracks, image, written, cancel, compared);
    switch (outcome.end) {
    case SectorOutcome::End::Done:
        events.Finished();
        return {BurnCode::Finished};
    case SectorOutcome::End::Cancelled:
        return {BurnCode::WriteError, {}, true};
    case SectorOutcome::End::Unreadable:
        return {BurnCode::NoFile, outcome.error};
    case SectorOutcome::End::Unwritable:
    case SectorOutcome::End::Different:
        break;
    }
    return {BurnCode::WriteError, outcome.error};
}
} // namespace

std::string_view burnText(BurnCode code) {
    const auto* const row =
        std::ranges::find(kBurnTexts, code, &std::pair<BurnCode, std::string_view>::first);
    return row == kBurnTexts.end() ? std::string_view() : row->second;
}

std::vector<std::string> CdDrive::speedTexts() const {
    std::vector<std::string> texts{"Max."};
    for (const int speed : speeds)
        texts.push_back(std::to_string(speed) + " KB/s (" +
                        std::to_string(std::lround(speed / kSingleSpeed)) + "x)");
    return texts;
}

std::vector<CdDrive> cAudio::drives() {
    BurnEvents nobody;
    auto all = onThread(loop_, nobody, [](BurnEvents& /*events*/) { return burner::drives(); });
    all.push_back({.name = std::string(kImageDrive), .address = {}, .isImage = true, .speeds = {}});
    return all;
}

Disc cAudio::disc(const CdDrive& drive) {
    if (drive.isImage)
        return {DiscState::Blank, kLongestDisc};
    BurnEvents nobody;
    return onThread(loop_, nobody, [&drive](BurnEvents& /*events*/) { return burner::disc(drive); });
}

std::string cAudio::blank(const CdDrive& drive, BurnEvents& events) {
    if (drive.isImage)
        return {};
    return onThread(loop_, events, [&drive](BurnEvents& told) { return burner::blank(drive, told); });
}

bool cAudio::setSpeed(const CdDrive& drive, std::size_t row) {
    if (row > drive.speeds.size())
        return false;
    const int speed = row == 0 ? 0 : drive.speeds[row - 1];
    if (!drive.isImage && speed != 0) {
        BurnEvents nobody;
        if (!onThread(loop_, nobody,
                      [&](BurnEvents& /*events*/) { return burner::takesSpeed(drive, speed); }))
            return false;
    }
    speed_ = speed;
    return true;
}

BurnOutcome cAudio::burn(const CdDrive& drive, const CdTracks& tracks, const std::filesystem::path& image,
                         BurnEvents& events, const std::stop_token& cancel) {
    const std::int64_t sectors = tracks.sectors();
    if (tracks.list().empty() || sectors > kLongestDisc)
        return {BurnCode::InvalidMedium,
                tracks.list().empty()
                    ? "There is no track to write."
                    : discTime(sectors) + " is longer than any disc: " + discTime(kLongestDisc) + "."};
    // Copies: whatever the caller's loop serves meanwhile, these stay.
    return onThread(loop_, events, [drive, tracks, image, speed = speed_, &cancel](BurnEvents& told) {
        return drive.isImage ? burnImage(tracks, image, told, cancel)
                             : burner::burn(drive, tracks, speed, told, cancel);
    });
}

} // namespace velmora
