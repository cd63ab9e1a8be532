// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeStack.h"

#include "base/Files.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kNameStart = "take-";
constexpr std::string_view kNameEnd = ".take";
constexpr std::string_view kHalfWritten = ".velmora-"; ///< what a kill leaves beside a file
constexpr int kFewestTicks = 2;                        ///< of what can be saved
constexpr double kMilliseconds = 1000;
/// No take is longer as a text; what stands there is somebody else's.
constexpr std::uintmax_t kLongest = 256U << 20U;

bool isTakeFile(const fs::path& file) {
    const std::string name = file.filename().string();
    return name.starts_with(kNameStart) && name.ends_with(kNameEnd);
}

std::optional<KeptTake> readTake(const fs::path& file) {
    std::error_code error;
    if (fs::file_size(file, error) > kLongest || error)
        return std::nullopt;
    const auto text = readWholeFile(file);
    return text ? parseTakeText(*text) : std::nullopt;
}

std::string unreadableText(const fs::path& file) {
    return "The take \"" + file.string() + "\" is damaged or can't be read. It is left as it is.";
}

fs::path newFile(const fs::path& folder, std::int64_t when) {
    std::error_code ignored;
    fs::path file;
    do {
        file = folder / (std::string(kNameStart) + std::to_string(when++) + std::string(kNameEnd));
    } while (fs::exists(file, ignored));
    return file;
}
} // namespace

TakeStack::TakeStack(fs::path folder, std::function<double()> wall)
    : folder_(std::move(folder))
    , wall_(std::move(wall)) {}

TakeStack::~TakeStack() {
    if (!thread_.joinable())
        return;
    {
        const std::scoped_lock lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void TakeStack::read() {
    if (std::exchange(isRead_, true))
        return;
    std::error_code error;
    for (fs::directory_iterator at(folder_, error); !error && at != fs::directory_iterator();
         at.increment(error)) {
        const fs::path& file = at->path();
        std::error_code ignored;
        if (file.filename().string().starts_with(kHalfWritten))
            fs::remove(file, ignored);
        if (!isTakeFile(file))
            continue;
        if (const auto kept = readTake(file))
            entries_.push_back({file, kept->when, kept->length, kept->take.size()});
        else
            unreadable_.push_back(unreadableText(file));
    }
    std::ranges::stable_sort(entries_, std::ranges::greater(), &Entry::when);
    std::ranges::sort(unreadable_);
}

const std::vector<TakeStack::Entry>& TakeStack::takes() {
    read();
    return entries_;
}

const std::vector<std::string>& TakeStack::unreadable() {
    read();
    return unreadable_;
}

std::string TakeStack::choose(std::size_t index, Take& take) {
    finish();
    if (index >= takes().size())
        return "There is no such take.";
    const fs::path& file = entries_[index].file;
    const auto unwritten = unwritten_.find(file);
    auto kept = unwritten != unwritten_.end() ? parseTakeText(unwritten->second.text) : readTake(file);
    if (!kept)
        return unreadableText(file);
    take = std::move(kept->take);
    return {};
}

std::optional<double> TakeStack::look(const Take& take, bool isRecording, double tick) {
    if (take.size() < runs_.ticks() || !goesOn_) {
        runs_ = {};
        seconds_ = 0;
        kept_.reset();
    }
    if (goesOn_ || isRecording) {
        const int before = runs_.ticks();
        runs_.extend(take);
        seconds_ += tick * (runs_.ticks() - before);
        keep();
    }
    goesOn_ = isRecording;
    return isRecording ? std::optional(kPeriod) : std::nullopt;
}

/// The take that goes on, as it is now.
void TakeStack::keep() {
    const auto ticks = static_cast<std::size_t>(runs_.ticks());
    if (runs_.ticks() < kFewestTicks || kept_ == ticks)
        return;
    read();
    Job job;
    if (!kept_) {
        const auto when = static_cast<std::int64_t>(std::llround((wall_() - seconds_) * kMilliseconds));
        entries_.insert(entries_.begin(), {newFile(folder_, when), std::max<std::int64_t>(when, 0), 0, 0});
        while (entries_.size() > kMost) {
            job.displaced.push_back(entries_.back().file);
            entries_.pop_back();
        }
    }
    kept_ = ticks;
    Entry& entry = entries_.front();
    entry.ticks = runs_.ticks();
    entry.length = std::llround(seconds_ * kMilliseconds);
    job.file = entry.file;
    job.text = takeText(entry.when, entry.length, runs_);
    submit(std::move(job));
}

void TakeStack::submit(Job job) {
    if (!thread_.joinable()) {
        try {
            thread_ = std::thread([this] { work(); });
        } catch (const std::system_error&) { // none to be had
            write(std::move(job));
            return;
        }
    }
    {
        const std::scoped_lock lock(mutex_);
        if (!jobs_.empty() && jobs_.back().file == job.file)
            jobs_.back().text = std::move(job.text);
        else
            jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void TakeStack::finish() {
    if (!thread_.joinable())
        return;
    std::unique_lock lock(mutex_);
    done_.wait(lock, [this] { return jobs_.empty() && !writing_; });
}

void TakeStack::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
        if (jobs_.empty())
            return;
        Job job = std::move(jobs_.front());
        jobs_.pop_front();
        writing_ = true;
        lock.unlock();
        write(std::move(job));
        lock.lock();
        writing_ = false;
        done_.notify_all();
    }
}

void TakeStack::write(Job job) {
    std::error_code ignored;
    fs::create_directories(folder_, ignored);
    if (const auto older = unwritten_.find(job.file); older != unwritten_.end())
        job.displaced = std::move(older->second.displaced);
    unwritten_[job.file] = std::move(job);
    for (auto at = unwritten_.begin(); at != unwritten_.end();) {
        if (const std::string problem = replaceFile(at->first, at->second.text); !problem.empty()) {
            if (!std::exchange(told_, true) && onTrouble)
                onTrouble("Your takes are kept in memory alone. " + problem);
            return; // the others would fare no better
        }
        for (const fs::path& file : at->second.displaced)
            fs::remove(file, ignored);
        at = unwritten_.erase(at);
    }
}

} // namespace velmora
