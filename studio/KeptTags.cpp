// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/KeptTags.h"

#include "base/QtText.h"
#include "base/Text.h"
#include "studio/SongTags.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

namespace {
constexpr std::uint64_t kLargest = 64U << 20U; ///< bytes of tags: many pictures, and no sound by mistake
constexpr std::size_t kHead = 10;

enum class Until : std::uint8_t { Remade, Cut, Louder }; ///< when a frame becomes false
struct Passing {
    std::string_view name;      ///< of versions 2.3 and 2.4
    std::string_view shortName; ///< of version 2.2
    Until until;
};
constexpr std::array kPassing{
    Passing{"MLLT", "MLL", Until::Remade}, Passing{"ASPI", "", Until::Remade},
    Passing{"SEEK", "", Until::Remade},    Passing{"TSIZ", "TSI", Until::Remade},
    Passing{"TLEN", "TLE", Until::Cut},    Passing{"ETCO", "ETC", Until::Cut},
    Passing{"SYTC", "STC", Until::Cut},    Passing{"SYLT", "SLT", Until::Cut},
    Passing{"POSS", "", Until::Cut},       Passing{"CHAP", "", Until::Cut},
    Passing{"CTOC", "", Until::Cut},       Passing{"RVA2", "", Until::Louder},
    Passing{"RVAD", "RVA", Until::Louder}, Passing{"EQU2", "", Until::Louder},
    Passing{"EQUA", "EQU", Until::Louder}, Passing{"RGAD", "", Until::Louder},
};
/// Those that are told by what stands in them, or in an item of an APE tag.
struct PassingText {
    std::string_view begin;
    Until until;
};
constexpr std::array kPassingTexts{
    PassingText{"itunsmpb", Until::Remade},
    PassingText{"itunnorm", Until::Louder},
    PassingText{"replaygain_", Until::Louder},
    PassingText{"mp3gain_", Until::Louder},
};

bool isPast(Until until, RemadeSound remade) {
    return until == Until::Remade || (until == Until::Cut) == (remade == RemadeSound::Part);
}

bool isPastText(std::string_view begin, RemadeSound remade) {
    const std::string text = toLower(std::string(begin));
    return std::ranges::any_of(kPassingTexts, [&](const PassingText& one) {
        return isPast(one.until, remade) && text.find(one.begin) != std::string::npos;
    });
}

std::uint32_t number(std::string_view bytes, unsigned bitsOfAByte) {
    std::uint32_t value = 0;
    for (const char byte : bytes)
        value = value << bitsOfAByte | static_cast<std::uint8_t>(byte);
    return value;
}

std::string read(ByteSource& source, std::uint64_t at, std::uint64_t length) {
    std::string bytes(static_cast<std::size_t>(length), '\0');
    bytes.resize(source.read(at, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()}));
    return bytes;
}

/// A zero that was put behind each 0xFF goes again.
std::string resynchronised(std::string_view bytes) {
    std::string kept;
    kept.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        kept += bytes[i];
        if (bytes[i] == '\xFF' && i + 1 < bytes.size() && bytes[i + 1] == '\0')
            ++i;
    }
    return kept;
}

/// One tag in front of the sound, made anew of the frames that stay.
class KeptId3 {
public:
    KeptId3(std::string_view tag, const Id3Tag& instead, RemadeSound remade)
        : instead_(instead)
        , remade_(remade)
        , version_(tag[3])
        , isWholeUnsynchronised_((tag[5] & 0x80) != 0)
        , frames_(tag.substr(kHead, number(tag.substr(6, 4), 7))) {
        constexpr int kHasMore = 0x40;
        if (isWholeUnsynchronised_ && version_ < 4) {
            plain_ = resynchronised(frames_);
            frames_ = plain_;
        }
        if ((tag[5] & kHasMore) != 0 && version_ > 2 && frames_.size() >= 4)
            at_ = version_ == 4 ? number(frames_.substr(0, 4), 7)
                                : std::size_t{number(frames_.substr(0, 4), 8)} + 4;
    }

    /// Of no version that is known nothing stays but the words that are told instead.
    std::string run() {
        if (version_ < 2 || version_ > 4)
            return id3Bytes(instead_);
        std::string kept = id3Frames(instead_, version_);
        while (next(kept)) {
        }
        return id3Whole(kept, version_);
    }

private:
    [[nodiscard]] std::size_t headBytes() const { return version_ == 2 ? 6 : kHead; }
    [[nodiscard]] std::size_t nameBytes() const { return version_ == 2 ? 3 : 4; }

    bool next(std::string& kept) {
        if (at_ >= frames_.size() || frames_.size() - at_ <= headBytes() || frames_[at_] == '\0')
            return false; // zeros fill a tag up
        const std::string_view name = frames_.substr(at_, nameBytes());
        const std::size_t length = lengthOf();
        const std::size_t start = at_ + headBytes();
        if (length > frames_.size() - start)
            return false;
        std::string_view content = frames_.substr(start, length);
        unsigned flags = version_ == 2 ? 0 : number(frames_.substr(at_ + 8, 2), 8);
        constexpr unsigned kUnsynchronised = 2;
        std::string plain;
        if (version_ == 4 && ((flags & kUnsynchronised) != 0 || isWholeUnsynchronised_)) {
            plain = resynchronised(content);
            content = plain;
            flags &= ~kUnsynchronised;
        }
        if (stays(name, content, flags))
            kept += id3Frame(name, content, version_, flags);
        at_ = start + length;
        return true;
    }

    [[nodiscard]] std::size_t lengthOf() const {
        if (version_ == 2)
            return number(frames_.substr(at_ + 3, 3), 8);
        const std::string_view digits = frames_.substr(at_ + 4, 4);
        const std::uint32_t whole = number(digits, 8);
        if (version_ == 3 || std::ranges::any_of(digits, [](char one) { return (one & 0x80) != 0; }))
            return whole;
        const std::uint32_t sevenBits = number(digits, 7);
        // Some programs write the lengths of version 4 as those of version 3: then a frame follows there.
        return !isFrame(at_ + kHead + sevenBits) && isFrame(at_ + kHead + whole) ? whole : sevenBits;
    }
    [[nodiscard]] bool isFrame(std::size_t at) const {
        if (at >= frames_.size())
            return at == frames_.size();
        return frames_[at] == '\0' || std::ranges::all_of(frames_.substr(at, 4), [](char c) {
                   return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
               });
    }

    [[nodiscard]] bool stays(std::string_view name, std::string_view content, unsigned flags) const {
        const auto is = [name](std::string_view longName, std::string_view shortName) {
            return name == longName || name == shortName;
        };
        if (std::ranges::any_of(kPassing, [&](const Passing& one) {
                return is(one.name, one.shortName) && isPast(one.until, remade_);
            }))
            return false;
        // Who wrote it says by this flag that it is to go when the sound becomes another.
        if (constexpr std::array<unsigned, 5> kToGo{0, 0, 0, 0x4000, 0x2000};
            (flags & kToGo[static_cast<std::size_t>(version_)]) != 0)
            return false;
        if (is("TIT2", "TT2"))
            return instead_.title.empty();
        if (is("TPE1", "TP1"))
            return instead_.artist.empty();
        if (is("APIC", "PIC"))
            return instead_.cover.empty() || !isFrontCover(content);
        if (is("TXXX", "TXX") || is("COMM", "COM"))
            return !isPastText(letters(content), remade_);
        return true;
    }
    [[nodiscard]] bool isFrontCover(std::string_view content) const {
        const std::size_t type = version_ == 2 ? 4 : content.find('\0', 1) + 1;
        constexpr char kFrontCover = 3;
        return type < content.size() && content[type] == kFrontCover;
    }
    /// The first of a text, however it is written.
    static std::string letters(std::string_view content) {
        constexpr std::size_t kEnough = 64;
        std::string text(content.substr(0, kEnough));
        std::erase(text, '\0');
        return text;
    }

    const Id3Tag& instead_;
    RemadeSound remade_;
    int version_;
    bool isWholeUnsynchronised_;
    std::string_view frames_;
    std::string plain_; ///< what they are read from then
    std::size_t at_ = 0;
};

std::string little(std::uint32_t value) {
    return {static_cast<char>(value & 0xFFU), static_cast<char>(value >> 8U & 0xFFU),
            static_cast<char>(value >> 16U & 0xFFU), static_cast<char>(value >> 24U)};
}

/// An APE tag without the items that are past; blank if none stays.
std::string keptApe(std::string_view tag, RemadeSound remade) {
    constexpr std::size_t kItemHead = 8;
    const std::string_view foot = tag.substr(tag.size() - kApeEndBytes);
    const bool hasHead = (foot[23] & 0x80) != 0;
    std::string_view items = tag.substr(hasHead ? kApeEndBytes : 0);
    items.remove_suffix(kApeEndBytes);
    const auto littleAt = [&items](std::size_t at) {
        std::string digits(items.substr(at, 4));
        std::ranges::reverse(digits);
        return number(digits, 8);
    };
    std::string kept;
    std::uint32_t count = 0;
    while (items.size() > kItemHead) {
        const std::size_t name = items.find('\0', kItemHead);
        const std::uint32_t length = littleAt(0);
        if (name == std::string_view::npos || length > items.size() - name - 1)
            break;
        const std::size_t whole = name + 1 + length;
        if (!isPastText(items.substr(kItemHead, name - kItemHead), remade)) {
            kept += items.substr(0, whole);
            ++count;
        }
        items.remove_prefix(whole);
    }
    if (count == 0)
        return {};
    const auto end = [&](unsigned flags) {
        constexpr std::uint32_t kVersion = 2000;
        constexpr std::size_t kNothing = 8;
        return "APETAGEX" + little(kVersion) +
               little(static_cast<std::uint32_t>(kept.size() + kApeEndBytes)) + little(count) +
               little(flags) + std::string(kNothing, '\0');
    };
    constexpr unsigned kHasHead = 1U << 31U;
    constexpr unsigned kIsHead = 1U << 29U;
    return end(kHasHead | kIsHead) + kept + end(kHasHead);
}

/// The old tag of fixed length, with what is told instead as far as it has letters and room for it.
std::string keptId3v1(std::string tag, const Id3Tag& instead) {
    constexpr std::size_t kBytes = 30;
    const auto put = [&tag](std::size_t at, const std::string& text) {
        if (text.empty())
            return;
        std::string field = toQString(text).toLatin1().toStdString();
        field.resize(kBytes, '\0');
        tag.replace(at, kBytes, field);
    };
    put(3, instead.title);
    put(33, instead.artist);
    return tag;
}
} // namespace

KeptTags keptTags(ByteSource& mp3, const Id3Tag& instead, RemadeSound remade) {
    KeptTags tooLarge{.error = "its tags are larger than 64 MiB; take pictures out of them first"};
    ByteWindow window(mp3);
    KeptTags kept;
    std::uint64_t at = 0;
    while (const std::uint64_t length = id3v2Length(window, at)) {
        if (at + length > kLargest)
            return tooLarge;
        const std::string tag = read(mp3, at, length);
        if (tag.size() < length)
            return {.error = "its tag can't be read"};
        kept.front += KeptId3(tag, instead, remade).run();
        at += length;
    }
    if (at == 0)
        kept.front = id3Bytes(instead);
    const TagsBehind behind = tagsBehind(window);
    if (behind.apeLength > kLargest)
        return tooLarge;
    if (behind.apeLength > 0) {
        const std::string ape = read(mp3, behind.soundEnd, behind.apeLength);
        if (ape.size() == behind.apeLength)
            kept.behind = keptApe(ape, remade);
    }
    if (behind.hasId3v1)
        kept.behind += keptId3v1(read(mp3, mp3.size() - kId3v1Bytes, kId3v1Bytes), instead);
    return kept;
}

} // namespace velmora
