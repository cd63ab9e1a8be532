// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/CdTracks.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace velmora {

namespace {
std::int64_t sectorsOf(const SoundInfo& sound) {
    const std::int64_t frames = (sound.frames * kCdRate + sound.rate / 2) / sound.rate;
    return std::max((frames + kSectorFrames - 1) / kSectorFrames, kShortestTrack);
}
} // namespace

std::string CdTracks::add(const std::filesystem::path& file) {
    if (tracks_.size() >= kMostTracks)
        return std::string(kTooManyTracks);
    if (!isSoundName(file))
        return file.string() + std::string(kNotSupported);
    const OpenedSound opened = openSound(file);
    if (!opened.reader)
        return file.string() + std::string(kNotSupported);
    CdTrack track;
    track.file = file;
    track.sound = opened.reader->info();
    track.sectors = sectorsOf(track.sound);
    track.title = track.sound.title.empty() ? file.stem().string() : track.sound.title;
    tracks_.push_back(std::move(track));
    return {};
}

void CdTracks::remove(std::size_t track) {
    if (track < tracks_.size())
        tracks_.erase(tracks_.begin() + static_cast<std::ptrdiff_t>(track));
}

bool CdTracks::moveUp(std::size_t track) {
    if (track == 0 || track >= tracks_.size())
        return false;
    std::swap(tracks_[track - 1], tracks_[track]);
    return true;
}

bool CdTracks::moveDown(std::size_t track) {
    return track < tracks_.size() && moveUp(track + 1);
}

std::int64_t CdTracks::sectors() const {
    std::int64_t all = 0;
    for (const CdTrack& track : tracks_)
        all += track.sectors;
    return all;
}

std::string discTime(std::int64_t sectors) {
    char text[32];
    const auto all = static_cast<long long>(sectors);
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", all / kSectorsPerSecond / 60,
                  all / kSectorsPerSecond % 60, all % kSectorsPerSecond);
    return text;
}

} // namespace velmora
