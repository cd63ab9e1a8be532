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

std::string frame(std::string_view name, std::string_view content) {
    using namespace std::string_literals;
    return std::string(name) + bigEndian(static_cast<std::uint32_t>(content.size())) + "\0\0"s +
           std::string(content);
}

std::string textFrame(std::string_view name, const std::string& text) {
    if (text.empty())
        return {};
    std::string content = "\1\xFF\xFE"; // UTF-16, and the order of its bytes
    for (const QChar unit : toQString(text)) {
        content += static_cast<char>(unit.unicode() & 0xFFU);
        content += static_cast<char>(unit.unicode() >> 8U);
    }
    return frame(name, content);
}

/// The type by which a tag names the picture; blank for what is none of the two.
std::string_view typeOf(std::string_view picture) {
    if (picture.starts_with("\xFF\xD8\xFF"))
        return "image/jpeg";
    if (picture.starts_with("\x89PNG\r\n\x1A\n"))
        return "image/png";
    return {};
}

std::string pictureFrame(std::string_view picture) {
    using namespace std::string_literals;
    if (picture.empty())
        return {};
    const std::string kFrontCover = "\3"s;
    return frame("APIC",
                 "\0"s + std::string(typeOf(picture)) + "\0"s + kFrontCover + "\0"s + std::string(picture));
}
} // namespace

std::string id3Bytes(const Id3Tag& tag) {
    using namespace std::string_literals;
    const std::string frames =
        textFrame("TIT2", tag.title) + textFrame("TPE1", tag.artist) + pictureFrame(tag.cover);
    if (frames.empty())
        return {};
    return "ID3\3\0\0"s + sevenBits(static_cast<std::uint32_t>(frames.size())) + frames;
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
