// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Id3Tag.h"

#include "base/Files.h"
#include "base/QtText.h"

#include <cstdint>
#include <string_view>

namespace velmora {

namespace {
constexpr std::size_t kLargestCover = std::size_t{16} << 20; ///< bytes

std::string bigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24U), static_cast<char>(value >> 16U & 0xFFU),
            static_cast<char>(value >> 8U & 0xFFU), static_cast<char>(value & 0xFFU)};
}

/// Four times seven bits, so that no byte looks like the begin of a frame of sound.
std::string sevenBits(std::uint32_t value) {
    return {static_cast<char>(value >> 21U & 0x7FU), static_cast<char>(value >> 14U & 0x7FU),
            static_cast<char>(value >> 7U & 0x7FU), static_cast<char>(value & 0x7FU)};
}

std::string textFrame(std::string_view name, const std::string& text, int version) {
    if (text.empty())
        return {};
    std::string content = "\1\xFF\xFE"; // UTF-16, and the order of its bytes
    for (const QChar unit : toQString(text)) {
        content += static_cast<char>(unit.unicode() & 0xFFU);
        content += static_cast<char>(unit.unicode() >> 8U);
    }
    return id3Frame(name, content, version);
}

/// The type by which a tag names the picture; blank for what is none of the two.
std::string_view typeOf(std::string_view picture) {
    if (picture.starts_with("\xFF\xD8\xFF"))
        return "image/jpeg";
    if (picture.starts_with("\x89PNG\r\n\x1A\n"))
        return "image/png";
    return {};
}

std::string pictureFrame(std::string_view picture, int version) {
    using namespace std::string_literals;
    if (picture.empty())
        return {};
    const std::string kFrontCover = "\3"s;
    const std::string_view type = typeOf(picture);
    const std::string begin =
        "\0"s + (version == 2 ? (type == "image/png" ? "PNG"s : "JPG"s) : std::string(type) + "\0"s);
    return id3Frame(version == 2 ? "PIC" : "APIC", begin + kFrontCover + "\0"s + std::string(picture),
                    version);
}
} // namespace

std::string id3Frame(std::string_view name, std::string_view content, int version, unsigned flags) {
    const auto size = static_cast<std::uint32_t>(content.size());
    std::string frame(name);
    if (version == 2) {
        frame += bigEndian(size).substr(1);
    } else {
        frame += version == 3 ? bigEndian(size) : sevenBits(size);
        frame += static_cast<char>(flags >> 8U & 0xFFU);
        frame += static_cast<char>(flags & 0xFFU);
    }
    return frame += content;
}

std::string id3Frames(const Id3Tag& tag, int version) {
    const bool isShort = version == 2;
    return textFrame(isShort ? "TT2" : "TIT2", tag.title, version) +
           textFrame(isShort ? "TP1" : "TPE1", tag.artist, version) + pictureFrame(tag.cover, version);
}

std::string id3Whole(std::string_view frames, int version) {
    using namespace std::string_literals;
    if (frames.empty())
        return {};
    return "ID3"s + static_cast<char>(version) + "\0\0"s +
           sevenBits(static_cast<std::uint32_t>(frames.size())) + std::string(frames);
}

std::string id3Bytes(const Id3Tag& tag) {
    constexpr int kVersion = 3;
    return id3Whole(id3Frames(tag, kVersion), kVersion);
}

CoverPicture readCover(const std::filesystem::path& file) {
    if (file.empty())
        return {};
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (!error && size > kLargestCover)
        return {{}, "The picture \"" + file.string() + "\" is larger than 16 MiB. Take a smaller one."};
    std::optional<std::string> bytes = readWholeFile(file);
    if (!bytes)
        return {{}, "The picture \"" + file.string() + "\" can't be read. Is it there?"};
    if (typeOf(*bytes).empty())
        return {{}, "\"" + file.string() + "\" is no JPEG or PNG picture. Take one of these."};
    return {std::move(*bytes), {}};
}

} // namespace velmora
