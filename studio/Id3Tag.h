// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

/// What an MP3 file tells of itself, in front of its sound.
struct Id3Tag {
    std::string title = {}; ///< UTF-8, any text
    std::string artist = {};
    std::string cover = {}; ///< bytes of a JPEG or PNG picture; blank for none
};

/// The tag as bytes, ID3 version 2.3: texts as UTF-16, which every player reads. Blank if there is nothing to
/// tell.
[[nodiscard]] std::string id3Bytes(const Id3Tag& tag);

/// The frames of such a tag alone, as version 2.2, 2.3 or 2.4 writes them.
[[nodiscard]] std::string id3Frames(const Id3Tag& tag, int version);
/// One frame. @param name four letters, in version 2.2 three
[[nodiscard]] std::string id3Frame(std::string_view name, std::string_view content, int version,
                                   unsigned flags = 0);
/// A tag of such frames; blank if there are none.
[[nodiscard]] std::string id3Whole(std::string_view frames, int version);

struct CoverPicture {
    std::string bytes;
    std::string error; ///< why there are none, in a sentence that names the file
};
/// Reads a JPEG or PNG picture of up to 16 MiB. A blank path is no picture and no error.
[[nodiscard]] CoverPicture readCover(const std::filesystem::path& file);

} // namespace velmora
