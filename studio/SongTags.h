// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"

#include <cstdint>
#include <span>
#include <string>

namespace velmora {

/// What a sound file tells of itself; UTF-8 in one line, blank where it tells nothing.
struct SongTags {
    std::string title;
    std::string artist;
};

/// A text of a tag that doesn't say how it is written: UTF-8 if it can be, else Latin 1. It ends at a NUL.
[[nodiscard]] std::string tagText(std::span<const std::uint8_t> bytes);

inline constexpr std::size_t kId3v1Bytes = 128;
/// The length of the ID3v2 tag that begins there, whatever its version; 0 if none does, or if it would reach
/// beyond the end.
[[nodiscard]] std::uint64_t id3v2Length(ByteWindow& bytes, std::uint64_t at);
/// Reads the tag that begins there; what @p tags has already stays.
void readId3v2(ByteWindow& bytes, std::uint64_t at, SongTags& tags);
/// Where the tags stand that follow the sound.
struct TagsBehind {
    std::uint64_t soundEnd = 0;
    std::uint64_t apeLength = 0; ///< of an APE tag, which begins there; 0 if there is none
    bool hasId3v1 = false;       ///< the last bytes of the file are one
};
[[nodiscard]] TagsBehind tagsBehind(ByteWindow& bytes);
inline constexpr std::size_t kApeEndBytes = 32; ///< of the foot of an APE tag, and of its head if it has one
/// The same for the old tag of fixed length. @param tag kId3v1Bytes, which begin with "TAG"
void readId3v1(std::span<const std::uint8_t> tag, SongTags& tags);

} // namespace velmora
