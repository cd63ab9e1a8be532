// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SongTags.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

namespace {
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kLongestText = 2048; ///< bytes of a tag's text that are looked at
constexpr std::size_t kHeadBytes = 10;     ///< of a tag, and of a frame in it

void append(std::string& text, char32_t character) {
    if (character < 0x20 || character == 0x7F)
        character = ' ';
    const auto bits = [character](int shift) {
        return static_cast<char>((character >> shift & 0x3F) | 0x80);
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        text += bits(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | character >> 12);
        text += bits(6);
        text += bits(0);
    } else {
        text += static_cast<char>(0xF0 | character >> 18);
        text += bits(12);
        text += bits(6);
        text += bits(0);
    }
}

/// The character of UTF-8 that begins @p bytes, which it loses; nothing if none does.
std::optional<char32_t> takeUtf8(Bytes& bytes) {
    struct Lead {
        std::uint8_t mask;
        std::uint8_t value;
        std::size_t length;
        char32_t least;
    };
    constexpr std::array kLeads{Lead{0x80, 0x00, 1, 0}, Lead{0xE0, 0xC0, 2, 0x80}, Lead{0xF0, 0xE0, 3, 0x800},
                                Lead{0xF8, 0xF0, 4, 0x10000}};
    const auto* const lead =
        std::find_if(kLeads.begin(), kLeads.end(),
                     [first = bytes.front()](const Lead& one) { return (first & one.mask) == one.value; });
    if (lead == kLeads.end() || bytes.size() < lead->length)
        return std::nullopt;
    char32_t character = bytes.front() & static_cast<std::uint8_t>(~lead->mask);
    for (const std::uint8_t byte : bytes.subspan(1, lead->length - 1)) {
        if ((byte & 0xC0) != 0x80)
            return std::nullopt;
        character = character << 6 | (byte & 0x3FU);
    }
    if (character < lead->least || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return std::nullopt;
    bytes = bytes.subspan(lead->length);
    return character;
}

std::optional<std::string> fromUtf8(Bytes bytes) {
    std::string text;
    while (!bytes.empty()) {
        const auto character = takeUtf8(bytes);
        if (!character)
            return std::nullopt;
        append(text, *character);
    }
    return text;
}

std::string fromLatin1(Bytes bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes)
        append(text, byte);
    return text;
}

/// Up to the first NUL.
std::string fromUtf16(Bytes bytes, bool bigEndian) {
    constexpr char32_t kUnknown = 0xFFFD;
    std::string text;
    const auto unit = [&](std::size_t i) -> char32_t {
        return bigEndian ? bytes[i] << 8 | bytes[i + 1] : bytes[i + 1] << 8 | bytes[i];
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t character = unit(i);
        if (character == 0)
            break;
        if (character >= 0xD800 && character < 0xE000) {
            const char32_t low = i + 3 < bytes.size() ? unit(i + 2) : 0;
            if (character < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            } else {
                character = kUnknown;
            }
        }
        append(text, character);
    }
    return text;
}

Bytes untilNul(Bytes bytes) {
    return bytes.first(static_cast<std::size_t>(std::ranges::find(bytes, std::uint8_t{0}) - bytes.begin()));
}

std::string withoutBlanks(const std::string& text) {
    return std::string(trimmed(text));
}

/// A text frame: a byte that tells how it is written, and the text.
std::string frameText(Bytes frame) {
    if (frame.empty())
        return {};
    const std::uint8_t writing = frame.front();
    Bytes text = frame.subspan(1);
    constexpr std::uint8_t kUtf16 = 1;
    constexpr std::uint8_t kUtf16Big = 2;
    if (writing != kUtf16 && writing != kUtf16Big)
        return tagText(text); // many a Latin 1 is UTF-8
    bool bigEndian = writing == kUtf16Big;
    if (text.size() >= 2 && text[0] + text[1] == 0xFF + 0xFE && (text[0] == 0xFF || text[1] == 0xFF)) {
        bigEndian = text[0] == 0xFE;
        text = text.subspan(2);
    }
    return withoutBlanks(fromUtf16(text, bigEndian));
}

std::uint32_t number(Bytes bytes, int bitsOfAByte) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << bitsOfAByte | byte;
    return value;
}

/// A zero that was put behind each 0xFF, so that no player takes it for a frame of sound, goes again.
std::vector<std::uint8_t> resynchronised(Bytes bytes) {
    std::vector<std::uint8_t> kept;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        kept.push_back(bytes[i]);
        if (bytes[i] == 0xFF && i + 1 < bytes.size() && bytes[i + 1] == 0)
            ++i;
    }
    return kept;
}

/// The frames of a tag, one behind the other.
class Id3Frames {
public:
    Id3Frames(ByteWindow& bytes, std::uint64_t at, std::uint64_t end, int version, SongTags& tags)
        : bytes_(bytes)
        , at_(at)
        , end_(end)
        , version_(version)
        , tags_(tags) {}

    void read() {
        while (at_ + headBytes() < end_ && next()) {
        }
    }

private:
    [[nodiscard]] std::size_t headBytes() const { return version_ == 2 ? 6 : kHeadBytes; }

    bool next() {
        std::array<std::uint8_t, kHeadBytes> head{};
        const Bytes there = bytes_.at(at_, headBytes());
        if (there.size() < headBytes() || there.front() == 0)
            return false; // zeros fill a tag up
        std::ranges::copy(there, head.begin());
        const std::size_t nameLength = version_ == 2 ? 3 : 4;
        const std::string_view name(reinterpret_cast<const char*>(head.data()), nameLength);
        const std::uint64_t length = lengthOf(head);
        const std::uint64_t start = at_ + headBytes();
        if (length > end_ - start)
            return false;
        if (std::string* text = wanted(name); text != nullptr && text->empty())
            *text = frameText(content(start, length, version_ == 4 ? head[9] : 0));
        at_ = start + length;
        return tags_.title.empty() || tags_.artist.empty();
    }

    [[nodiscard]] std::uint64_t lengthOf(Bytes head) {
        if (version_ == 2)
            return number(head.subspan(3, 3), 8);
        const Bytes digits = head.subspan(4, 4);
        const std::uint64_t plain = number(digits, 8);
        if (version_ != 4 || std::ranges::any_of(digits, [](std::uint8_t digit) { return digit >= 0x80; }))
            return plain;
        const std::uint64_t sevenBits = number(digits, 7);
        // Some programs write the lengths of version 4 as those of version 3: then a frame follows there.
        return plain != sevenBits && !isFrame(at_ + kHeadBytes + sevenBits) &&
                       isFrame(at_ + kHeadBytes + plain)
                   ? plain
                   : sevenBits;
    }

    [[nodiscard]] bool isFrame(std::uint64_t at) {
        if (at >= end_)
            return at == end_;
        const Bytes name = bytes_.at(at, 4);
        return name.empty() || name.front() == 0 || std::ranges::all_of(name, [](std::uint8_t c) {
                   return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
               });
    }

    std::string* wanted(std::string_view name) {
        if (name == "TIT2" || name == "TT2")
            return &tags_.title;
        return name == "TPE1" || name == "TP1" ? &tags_.artist : nullptr;
    }

    /// What stands in a frame, without what its flags of version 4 say of it.
    std::vector<std::uint8_t> content(std::uint64_t start, std::uint64_t length, unsigned flags) {
        constexpr unsigned kHasLength = 1;
        constexpr unsigned kUnsynchronised = 2;
        constexpr unsigned kUnreadable = 4 | 8; // encrypted, compressed
        Bytes there =
            bytes_.at(start, static_cast<std::size_t>(std::min<std::uint64_t>(length, kLongestText)));
        if ((flags & kUnreadable) != 0)
            return {};
        if ((flags & kHasLength) != 0)
            there = there.subspan(std::min<std::size_t>(there.size(), 4));
        return (flags & kUnsynchronised) != 0 ? resynchronised(there)
                                              : std::vector<std::uint8_t>(there.begin(), there.end());
    }

    ByteWindow& bytes_;
    std::uint64_t at_;
    std::uint64_t end_;
    int version_;
    SongTags& tags_;
};
} // namespace

std::string tagText(Bytes bytes) {
    if (bytes.size() > kLongestText) {
        bytes = bytes.first(kLongestText);
        while (!bytes.empty() && bytes.back() >= 0x80) // what may be the beginning of a character
            bytes = bytes.first(bytes.size() - 1);
    }
    bytes = untilNul(bytes);
    const auto text = fromUtf8(bytes);
    return withoutBlanks(text ? *text : fromLatin1(bytes));
}

std::uint64_t id3v2Length(ByteWindow& bytes, std::uint64_t at) {
    const Bytes head = bytes.at(at, kHeadBytes);
    constexpr std::uint8_t kHasFooter = 0x10;
    if (head.size() < kHeadBytes || head[0] != 'I' || head[1] != 'D' || head[2] != '3' || head[3] == 0xFF ||
        std::ranges::any_of(head.subspan(6, 4), [](std::uint8_t digit) { return digit >= 0x80; }))
        return 0;
    const std::uint64_t length =
        std::uint64_t{number(head.subspan(6, 4), 7)} + kHeadBytes + ((head[5] & kHasFooter) != 0 ? 10 : 0);
    return length <= bytes.size() - at ? length : 0;
}

void readId3v2(ByteWindow& bytes, std::uint64_t at, SongTags& tags) {
    const std::uint64_t length = id3v2Length(bytes, at);
    if (length == 0)
        return;
    const Bytes head = bytes.at(at, kHeadBytes + 4);
    const int version = head[3];
    const unsigned flags = head[5];
    constexpr unsigned kUnsynchronised = 0x80;
    constexpr unsigned kExtended = 0x40;
    if (version < 2 || version > 4)
        return;
    std::uint64_t first = at + kHeadBytes;
    if ((flags & kUnsynchronised) != 0 && version < 4) {
        // Its lengths count the bytes as they were before; the texts stand in front, as a rule.
        const auto plain = resynchronised(bytes.at(first, ByteWindow::kReach - kHeadBytes));
        MemoryBytes source(plain);
        ByteWindow window(source);
        std::uint64_t skipped = 0;
        if ((flags & kExtended) != 0 && version == 3 && plain.size() >= 4)
            skipped = std::uint64_t{number(Bytes(plain).first(4), 8)} + 4;
        Id3Frames(window, skipped, std::min<std::uint64_t>(plain.size(), length - kHeadBytes), version, tags)
            .read();
        return;
    }
    if ((flags & kExtended) != 0 && version > 2 && head.size() == kHeadBytes + 4)
        first += version == 4 ? number(head.last(4), 7) : std::uint64_t{number(head.last(4), 8)} + 4;
    Id3Frames(bytes, first, at + length, version, tags).read();
}

TagsBehind tagsBehind(ByteWindow& bytes) {
    const auto begins = [](Bytes there, std::string_view name) {
        return there.size() >= name.size() && std::equal(name.begin(), name.end(), there.begin());
    };
    TagsBehind tags{.soundEnd = bytes.size()};
    if (tags.soundEnd >= kId3v1Bytes) {
        const Bytes tag = bytes.at(tags.soundEnd - kId3v1Bytes, kId3v1Bytes);
        tags.hasId3v1 = tag.size() == kId3v1Bytes && begins(tag, "TAG");
        tags.soundEnd -= tags.hasId3v1 ? kId3v1Bytes : 0;
    }
    if (tags.soundEnd < kApeEndBytes)
        return tags;
    const Bytes foot = bytes.at(tags.soundEnd - kApeEndBytes, kApeEndBytes);
    if (foot.size() < kApeEndBytes || !begins(foot, "APETAGEX"))
        return tags;
    const std::uint64_t length = std::uint64_t{foot[12]} | std::uint64_t{foot[13]} << 8 |
                                 std::uint64_t{foot[14]} << 16 | std::uint64_t{foot[15]} << 24;
    const bool hasHead = (foot[23] & 0x80U) != 0;
    const std::uint64_t whole = length + (hasHead ? kApeEndBytes : 0);
    if (length >= kApeEndBytes && whole <= tags.soundEnd) {
        tags.soundEnd -= whole;
        tags.apeLength = whole;
    }
    return tags;
}

void readId3v1(Bytes tag, SongTags& tags) {
    constexpr std::size_t kTitle = 3;
    constexpr std::size_t kArtist = 33;
    constexpr std::size_t kBytes = 30;
    if (tags.title.empty())
        tags.title = tagText(tag.subspan(kTitle, kBytes));
    if (tags.artist.empty())
        tags.artist = tagText(tag.subspan(kArtist, kBytes));
}

} // namespace velmora
