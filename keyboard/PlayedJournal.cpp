// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedJournal.h"

#include "base/Files.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
// A record: mark, kind, channel, note, velocity, program, two bytes of checksum, and the moment in
// microseconds; the last two with their lowest byte first.
constexpr std::size_t kRecord = 16;
constexpr std::size_t kSumAt = 6;
constexpr std::size_t kMomentAt = 8;
constexpr std::uint8_t kMark = 0xA5;
constexpr double kMicroseconds = 1e6;
constexpr double kMostMoment = 1e12; ///< seconds: beyond, no clock is right

/// The file is written anew beyond this.
constexpr std::size_t kGrown = 1U << 20U;
/// No journal is longer; what stands there is somebody else's, or junk.
constexpr std::uintmax_t kLongest = 64U << 20U;
/// What could not be written is kept up to so many events: half an hour of dense playing.
constexpr std::size_t kMostUnwritten = 50'000;
constexpr std::size_t kUsuallyWaiting = 512;
constexpr std::chrono::milliseconds kPatience(500);

using Record = std::array<std::uint8_t, kRecord>;

std::uint16_t sumOf(const Record& record) {
    std::uint32_t sum = 0x811C9DC5U;
    for (std::size_t i = 0; i < kRecord; ++i)
        if (i != kSumAt && i != kSumAt + 1)
            sum = (sum ^ record[i]) * 0x01000193U;
    return static_cast<std::uint16_t>(sum ^ sum >> 16U);
}

Record recordOf(const PlayedEvent& event) {
    Record record{kMark,          static_cast<std::uint8_t>(event.kind),
                  event.channel,  event.note,
                  event.velocity, event.program};
    auto moment = static_cast<std::uint64_t>(std::llround(event.moment * kMicroseconds));
    for (std::size_t i = kMomentAt; i < kRecord; ++i, moment >>= 8U)
        record[i] = static_cast<std::uint8_t>(moment);
    const std::uint16_t sum = sumOf(record);
    record[kSumAt] = static_cast<std::uint8_t>(sum);
    record[kSumAt + 1] = static_cast<std::uint8_t>(sum >> 8U);
    return record;
}

std::optional<PlayedEvent> eventOf(const Record& record) {
    const auto sum = static_cast<std::uint16_t>(record[kSumAt] | record[kSumAt + 1] << 8U);
    if (record[0] != kMark || sum != sumOf(record) ||
        record[1] > static_cast<std::uint8_t>(PlayedEvent::Kind::Silenced) || record[2] > 15 ||
        record[3] > 127 || record[4] > 127 || record[5] > 127)
        return std::nullopt;
    std::uint64_t moment = 0;
    for (std::size_t i = kRecord; i-- > kMomentAt;)
        moment = moment << 8U | record[i];
    const double seconds = static_cast<double>(std::bit_cast<std::int64_t>(moment)) / kMicroseconds;
    if (std::abs(seconds) > kMostMoment)
        return std::nullopt;
    return PlayedEvent{
        static_cast<PlayedEvent::Kind>(record[1]), record[2], record[3], record[4], record[5], seconds};
}
} // namespace

std::string journalBytes(std::span<const PlayedEvent> events) {
    std::string bytes;
    bytes.reserve(events.size() * kRecord);
    for (const PlayedEvent& event : events)
        for (const std::uint8_t byte : recordOf(event))
            bytes += static_cast<char>(byte);
    return bytes;
}

std::vector<PlayedEvent> parseJournal(std::string_view bytes) {
    std::vector<PlayedEvent> events;
    Record record{};
    while (bytes.size() >= kRecord) {
        std::memcpy(record.data(), bytes.data(), kRecord);
        const auto event = eventOf(record);
        if (event)
            events.push_back(*event);
        bytes.remove_prefix(event ? kRecord : 1);
    }
    return events;
}

std::vector<PlayedEvent> recentOf(std::vector<PlayedEvent> events, double now) {
    std::erase_if(events, [now](const PlayedEvent& event) {
        return event.moment < now - PlayedJournal::kKept || event.moment > now;
    });
    std::ranges::stable_sort(events, {}, &PlayedEvent::moment);
    return events;
}

PlayedJournal::PlayedJournal(fs::path file, std::function<double()> wall)
    : file_(std::move(file))
    , wall_(std::move(wall))
    , finding_(found_.get_future()) {
    waiting_.reserve(kUsuallyWaiting);
}

PlayedJournal::~PlayedJournal() {
    if (!thread_.joinable())
        return;
    {
        const std::scoped_lock lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void PlayedJournal::begin() {
    if (thread_.joinable())
        return;
    try {
        thread_ = std::thread([this] { work(); });
    } catch (const std::system_error&) { // none to be had now: the next event tries again
    }
}

void PlayedJournal::append(const PlayedEvent& event) {
    begin();
    bool sleeps = false;
    {
        const std::scoped_lock lock(mutex_);
        if (waiting_.size() < kMostUnwritten)
            waiting_.push_back(event);
        sleeps = std::exchange(idle_, false);
    }
    if (sleeps)
        wake_.notify_one();
}

const std::vector<PlayedEvent>* PlayedJournal::earlier() {
    begin();
    if (!earlier_ && finding_.wait_for(kPatience) == std::future_status::ready)
        earlier_ = finding_.get();
    return earlier_ ? &*earlier_ : nullptr;
}

void PlayedJournal::finish() {
    if (!thread_.joinable())
        return;
    std::unique_lock lock(mutex_);
    hurried_ = true;
    wake_.notify_one();
    done_.wait(lock, [this] { return idle_; });
    hurried_ = false;
}

void PlayedJournal::work() {
    std::error_code error;
    std::optional<std::string> bytes;
    if (fs::is_regular_file(file_, error) && fs::file_size(file_, error) <= kLongest && !error)
        bytes = readWholeFile(file_);
    found_.set_value(recentOf(parseJournal(bytes.value_or("")), wall_()));
    const std::chrono::duration<double> gathered(kGathered);
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ending_ || !idle_; });
        wake_.wait_for(lock, gathered, [this] { return ending_ || hurried_; });
        unwritten_.insert(unwritten_.end(), waiting_.begin(), waiting_.end());
        waiting_.clear();
        lock.unlock();
        if (!unwritten_.empty())
            write(); // what could not be written waits for the next event
        lock.lock();
        idle_ = waiting_.empty();
        if (idle_)
            done_.notify_all();
        if (ending_ && idle_)
            break;
    }
    lock.unlock();
    close();
}

void PlayedJournal::write() {
    if (unwritten_.size() > kMostUnwritten)
        unwritten_.erase(unwritten_.begin(), unwritten_.end() - kMostUnwritten);
    if (descriptor_ < 0 && !open())
        return;
    const std::string bytes = journalBytes(unwritten_);
    std::string_view left = bytes;
    while (!left.empty()) {
        const ssize_t count = ::write(descriptor_, left.data(), left.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            const int reason = errno;
            // A record that is torn would be passed over; so that none of it is written twice, it goes.
            static_cast<void>(::ftruncate(descriptor_, static_cast<off_t>(size_)) == 0);
            close();
            fail(std::generic_category().message(reason));
            return;
        }
        left.remove_prefix(static_cast<std::size_t>(count));
    }
    static_cast<void>(::fdatasync(descriptor_));
    size_ += bytes.size();
    unwritten_.clear();
    if (size_ > kGrown)
        compact();
}

/// The last ten minutes take the place of all. A journal that can't be written anew goes on growing.
void PlayedJournal::compact() {
    close();
    const auto bytes = readWholeFile(file_);
    if (bytes)
        static_cast<void>(replaceFile(file_, journalBytes(recentOf(parseJournal(*bytes), wall_()))));
}

bool PlayedJournal::open() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    const auto size = fs::file_size(file_, error);
    if (!error && size > kLongest)
        fs::remove(file_, error);
    descriptor_ = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0600);
    if (descriptor_ < 0) {
        fail(std::generic_category().message(errno));
        return false;
    }
    const off_t end = ::lseek(descriptor_, 0, SEEK_END);
    size_ = static_cast<std::size_t>(std::max<off_t>(end, 0));
    return true;
}

void PlayedJournal::close() {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

void PlayedJournal::fail(const std::string& words) {
    if (!std::exchange(told_, true) && onTrouble)
        onTrouble("What you play is kept in memory alone, since writing " + file_.string() +
                  " failed: " + words + ".");
}

} // namespace velmora
