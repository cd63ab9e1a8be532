// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakePicture.h"

#include "base/SteadyClock.h"
#include "studio/SoundReader.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr std::size_t kPiece = 16'384; ///< frames that are read at once
constexpr double kShown = 0.1;         ///< seconds between two calls of `changed`

void widen(WaveColumn& column, const WaveColumn& by) {
    for (std::size_t side = 0; side < 2; ++side) {
        column.lowest[side] = std::min(column.lowest[side], by.lowest[side]);
        column.highest[side] = std::max(column.highest[side], by.highest[side]);
    }
}

/// Of sound of so many channels: the first two, or one on both sides.
WaveColumn columnOf(std::span<const float> interleaved, std::size_t channels) {
    const std::size_t right = channels > 1 ? 1 : 0;
    WaveColumn column{{interleaved[0], interleaved[right]}, {interleaved[0], interleaved[right]}};
    for (std::size_t i = 0; i < interleaved.size(); i += channels) {
        const float a = interleaved[i];
        const float b = interleaved[i + right];
        column.lowest[0] = a < column.lowest[0] ? a : column.lowest[0];
        column.highest[0] = a > column.highest[0] ? a : column.highest[0];
        column.lowest[1] = b < column.lowest[1] ? b : column.lowest[1];
        column.highest[1] = b > column.highest[1] ? b : column.highest[1];
    }
    return column;
}

/// The first frame of a column.
std::int64_t startOf(std::size_t column, std::size_t columns, std::int64_t frames) {
    const auto of = static_cast<std::int64_t>(columns);
    const auto at = static_cast<std::int64_t>(column);
    return frames / of * at + (frames % of * at + of - 1) / of;
}
} // namespace

std::vector<WaveColumn> fold(std::span<const WaveColumn> columns, std::size_t count) {
    std::vector<WaveColumn> folded(columns.empty() ? 0 : count);
    for (std::size_t i = 0; i < folded.size(); ++i) {
        const std::size_t begin = i * columns.size() / count;
        const std::size_t end = std::max(begin + 1, (i + 1) * columns.size() / count);
        folded[i] = columns[begin];
        for (const WaveColumn& one : columns.subspan(begin, end - begin))
            widen(folded[i], one);
    }
    return folded;
}

TakePicture::TakePicture(std::filesystem::path file, std::function<void()> changed, std::size_t columns)
    : file_(std::move(file))
    , changed_(std::move(changed))
    , wanted_(std::max<std::size_t>(columns, 1))
    , thread_([this](const std::stop_token& ends) { run(ends); }) {}

void TakePicture::run(const std::stop_token& ends) {
    OpenedSound sound = openSound(file_);
    if (sound.reader) {
        const SoundInfo& info = sound.reader->info();
        {
            const std::lock_guard lock(mutex_);
            columns_.resize(static_cast<std::size_t>(
                std::min(static_cast<std::int64_t>(wanted_), std::max<std::int64_t>(info.frames, 0))));
        }
        rate_ = info.rate;
        frames_ = info.frames;
        read(*sound.reader, ends);
    } else {
        const std::lock_guard lock(mutex_);
        problem_ = sound.error;
    }
    if (ends.stop_requested())
        return;
    isDone_ = true;
    if (changed_)
        changed_();
}

void TakePicture::read(SoundReader& reader, const std::stop_token& ends) {
    const auto channels = static_cast<std::size_t>(reader.info().channels);
    std::vector<float> piece(kPiece * channels);
    for (double shown = steadySeconds(); !ends.stop_requested();) {
        const std::size_t count = reader.read(piece);
        if (count == 0)
            return;
        take(std::span(piece).first(count * channels), channels);
        if (changed_ && steadySeconds() - shown > kShown) {
            shown = steadySeconds();
            changed_();
        }
    }
}

void TakePicture::take(std::span<const float> interleaved, std::size_t channels) {
    const std::lock_guard lock(mutex_);
    while (!interleaved.empty() && column_ < columns_.size()) {
        const std::int64_t end = startOf(column_ + 1, columns_.size(), frames_);
        const std::size_t values =
            std::min(interleaved.size(), static_cast<std::size_t>(end - known_) * channels);
        const WaveColumn part = columnOf(interleaved.first(values), channels);
        if (known_ == startOf(column_, columns_.size(), frames_))
            columns_[column_] = part;
        else
            widen(columns_[column_], part);
        interleaved = interleaved.subspan(values);
        known_ += static_cast<std::int64_t>(values / channels);
        column_ += known_ == end ? 1 : 0;
    }
}

std::vector<WaveColumn> TakePicture::columns() const {
    const std::lock_guard lock(mutex_);
    return columns_;
}

double TakePicture::share() const {
    const std::lock_guard lock(mutex_);
    return isDone_ ? 1
                   : static_cast<double>(known_) / static_cast<double>(std::max<std::int64_t>(frames_, 1));
}

std::string TakePicture::problem() const {
    const std::lock_guard lock(mutex_);
    return problem_;
}

} // namespace velmora
