// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SoundRow.h"

#include "sound/AudioDriver.h"
#include "studio/Resampler.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
std::string unplayable(const std::filesystem::path& file, const std::string& why) {
    return "The file \"" + file.string() + "\" can't be played: " + why + ".";
}
} // namespace

std::string SoundRow::open(const std::vector<std::filesystem::path>& files) {
    if (files.empty())
        return "There is no file to play.";
    for (const auto& path : files) {
        OpenedSound opened = openSound(path);
        if (!opened.reader)
            return opened.error;
        const SoundInfo info = opened.reader->info();
        StereoReader reader(std::move(opened.reader), kAudioRate);
        if (!reader.problem().empty())
            return unplayable(path, reader.problem());
        files_.push_back({path, reader.frames(), info});
        if (files_.size() == 1) {
            left_ = reader.frames();
            reader_.emplace(std::move(reader));
        }
    }
    return {};
}

int SoundRow::rate() const {
    return files_.size() == 1 ? files_.front().info.rate : kAudioRate;
}

std::int64_t SoundRow::length() const {
    if (files_.size() == 1)
        return files_.front().info.frames;
    std::int64_t sum = 0;
    for (const File& file : files_)
        sum += file.frames;
    return sum;
}

void SoundRow::seek(std::int64_t frame) {
    problem_.clear();
    std::size_t file = 0;
    for (; file + 1 < files_.size() && frame >= files_[file].frames; ++file)
        frame -= files_[file].frames;
    if (!reach(file) || frame == 0)
        return;
    const SoundInfo& info = files_[file].info;
    const std::int64_t own = files_.size() == 1 ? frame : framesAtRate(frame, kAudioRate, info.rate);
    reader_->seek(std::min(own, info.frames));
    left_ -= framesAtRate(own, info.rate, kAudioRate);
}

/// Goes to the beginning of a file. False if it can't be opened any more.
bool SoundRow::reach(std::size_t file) {
    if (file == at_ && reader_) {
        reader_->seek(0);
    } else {
        reader_.reset();
        OpenedSound opened = openSound(files_[file].path);
        if (opened.reader)
            reader_.emplace(std::move(opened.reader), kAudioRate);
        else if (problem_.empty())
            problem_ = std::move(opened.error);
    }
    at_ = file;
    left_ = reader_ ? files_[file].frames : 0;
    return reader_.has_value();
}

std::size_t SoundRow::read(std::span<float> interleaved, const std::stop_token& cancel) {
    std::size_t done = 0;
    while (done < interleaved.size() && !cancel.stop_requested()) {
        if (left_ <= 0) {
            if (at_ + 1 >= files_.size())
                break;
            reach(at_ + 1);
            continue;
        }
        const auto wanted = static_cast<std::size_t>(
            std::min<std::int64_t>(left_, static_cast<std::int64_t>(interleaved.size() - done) / 2));
        const std::size_t got = reader_->read(interleaved.subspan(done, 2 * wanted));
        done += 2 * got;
        left_ -= static_cast<std::int64_t>(got);
        if (got < wanted) {
            missed(files_[at_]);
            left_ = 0;
        }
    }
    return done / 2;
}

void SoundRow::missed(const File& file) {
    reader_.reset();
    if (problem_.empty())
        problem_ = "The file \"" + file.path.string() +
                   "\" ended before its end; it was cut, or can't be read any further.";
}

} // namespace velmora
