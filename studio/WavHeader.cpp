// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavHeader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>

namespace velmora {

namespace {
using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t kFileHead = 12; ///< kind, length, "WAVE"
constexpr std::uint64_t kChunkHead = 8; ///< name, length
constexpr std::uint32_t kLongerThan32Bits = 0xFFFFFFFF;

std::string_view nameAt(Bytes bytes, std::size_t offset) {
    return {reinterpret_cast<const char*>(bytes.data()) + offset, 4};
}

bool isName(Bytes bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t c) { return c >= ' ' && c < 0x7F; });
}

class WavChunks {
public:
    explicit WavChunks(ByteSource& bytes) : bytes_(bytes) {}

    WavHeader read() {
        if (!isWav(bytes_)) {
            header_.problem = "it is no WAV file";
            return header_;
        }
        const Bytes head = bytes_.at(0, kFileHead);
        header_.isBigEndian = nameAt(head, 0) == "RIFX";
        hasLongLengths_ = nameAt(head, 0) == "RF64" || nameAt(head, 0) == "BW64";
        end_ = number(head, 4, 4) + kChunkHead;
        for (std::uint64_t at = kFileHead; at + kChunkHead <= bytes_.size();)
            at = readChunk(at);
        judge();
        return header_;
    }

private:
    [[nodiscard]] std::uint64_t number(Bytes bytes, std::size_t offset, std::size_t count) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < count; ++i)
            value = value << 8 | bytes[offset + (header_.isBigEndian ? i : count - 1 - i)];
        return value;
    }

    /// Returns where the next one begins.
    std::uint64_t readChunk(std::uint64_t at) {
        const Bytes head = bytes_.at(at, kChunkHead);
        if (head.size() < kChunkHead)
            return bytes_.size(); // it can't be read
        std::array<char, 4> letters{};
        std::ranges::copy(nameAt(head, 0), letters.begin());
        const std::string_view name(letters.data(), letters.size());
        const std::uint64_t start = at + kChunkHead;
        const std::uint64_t there = bytes_.size() - start;
        std::uint64_t length = number(head, 4, 4);
        if (name == "data") {
            if (hasLongLengths_ && length == kLongerThan32Bits)
                length = longLength_.value_or(length);
            if (length == 0 && !soundBytes_ && nothingFollows(start))
                length = there;
        }
        length = std::min(length, there);
        if (name == "data")
            takeSound(start, length);
        else
            takeOther(name, start, length);
        return behind(start + length, length);
    }

    /// Past the byte that fills an odd chunk up, unless who wrote the file has forgotten it.
    std::uint64_t behind(std::uint64_t end, std::uint64_t length) {
        if (length % 2 == 0)
            return end;
        const Bytes next = bytes_.at(end, 4);
        constexpr std::array<std::string_view, 4> kUsual{"data", "fmt ", "LIST", "fact"};
        const bool isForgotten =
            next.size() == 4 && std::ranges::find(kUsual, nameAt(next, 0)) != kUsual.end();
        return isForgotten ? end : end + 1;
    }

    void takeSound(std::uint64_t start, std::uint64_t length) {
        if (soundBytes_)
            return;
        if (length > 0)
            soundBytes_ = length;
        header_.soundAt = start;
    }

    void takeOther(std::string_view name, std::uint64_t start, std::uint64_t length) {
        if (name == "fmt ")
            takeFormat(start, length);
        else if (name == "ds64" && length >= 16)
            takeLongLengths(bytes_.at(start, 16));
        else if (name == "LIST" && length >= 4)
            takeList(start, start + length);
        else if (name == "id3 " || name == "ID3 ") {
            readId3v2(bytes_, start, header_.tags);
            keep(name, start, length);
        }
    }

    static WavStretch stretch(std::string_view name, std::uint64_t start, std::uint64_t length) {
        WavStretch made{.at = start, .length = length};
        std::ranges::copy(name, made.name);
        return made;
    }
    void keep(std::string_view name, std::uint64_t start, std::uint64_t length) {
        constexpr std::size_t kMost = 8;
        if (header_.tellings.size() < kMost)
            header_.tellings.push_back(stretch(name, start, length));
    }

    void takeLongLengths(Bytes chunk) {
        if (!hasLongLengths_ || chunk.size() < 16)
            return;
        constexpr std::uint64_t kSensible = std::numeric_limits<std::int64_t>::max();
        end_ = std::min(number(chunk, 0, 8), kSensible) + kChunkHead;
        longLength_ = std::min(number(chunk, 8, 8), kSensible);
    }

    void takeFormat(std::uint64_t start, std::uint64_t length) {
        constexpr std::size_t kPlainBytes = 16;
        const Bytes chunk = bytes_.at(start, static_cast<std::size_t>(std::min<std::uint64_t>(length, 40)));
        if (hasFormat_ || chunk.size() < kPlainBytes)
            return;
        hasFormat_ = true;
        header_.format = stretch("fmt ", start, length);
        std::uint64_t code = number(chunk, 0, 2);
        header_.channels = static_cast<int>(number(chunk, 2, 2));
        rate_ = number(chunk, 4, 4);
        header_.bits = static_cast<int>(number(chunk, 14, 2));
        // What stands between, bytes a second and a frame, follows from these and is wrong in many a file.
        constexpr std::uint64_t kExtensible = 0xFFFE;
        constexpr std::size_t kExtendedBytes = 40;
        constexpr std::size_t kCodeAt = 24; ///< the first number of the identity of what it is
        if (code == kExtensible && chunk.size() == kExtendedBytes)
            code = number(chunk, kCodeAt, header_.isBigEndian ? 4 : 2);
        takeEncoding(code);
    }

    void takeEncoding(std::uint64_t code) {
        struct Known {
            std::uint64_t code;
            WavEncoding encoding;
            int fewest; ///< bits
            int most;
            int step;
        };
        constexpr std::array kKnown{
            Known{1, WavEncoding::Plain, 1, 32, 1},
            Known{3, WavEncoding::Float, 32, 64, 32},
            Known{6, WavEncoding::ALaw, 8, 8, 1},
            Known{7, WavEncoding::MuLaw, 8, 8, 1},
        };
        const auto* const known = std::ranges::find(kKnown, code, &Known::code);
        if (known == kKnown.end()) {
            header_.problem = "its samples are encoded in a way (" + std::to_string(code) +
                              ") that can't be read here; convert it to plain samples first";
            return;
        }
        header_.encoding = known->encoding;
        if (header_.bits < known->fewest || header_.bits > known->most || header_.bits % known->step != 0)
            header_.problem = "samples of " + std::to_string(header_.bits) + " bits can't be read here";
    }

    /// Title and artist.
    void takeList(std::uint64_t at, std::uint64_t end) {
        const Bytes kind = bytes_.at(at, 4);
        if (kind.size() < 4 || nameAt(kind, 0) != "INFO")
            return;
        keep("LIST", at, end - at);
        at += 4;
        while (at + kChunkHead <= end) {
            const Bytes head = bytes_.at(at, kChunkHead);
            if (head.size() < kChunkHead)
                return;
            const bool isTitle = nameAt(head, 0) == "INAM";
            const bool isArtist = nameAt(head, 0) == "IART";
            const std::uint64_t start = at + kChunkHead;
            const std::uint64_t length = std::min(number(head, 4, 4), end - start);
            std::string& text = isTitle ? header_.tags.title : header_.tags.artist;
            if ((isTitle || isArtist) && text.empty())
                text = tagText(
                    bytes_.at(start, static_cast<std::size_t>(std::min<std::uint64_t>(length, 4096))));
            at = start + length + length % 2;
        }
    }

    /// Whether nothing stands behind a sound of length 0, by the header's word: then whoever recorded it
    /// didn't come to write any length.
    bool nothingFollows(std::uint64_t start) {
        if (end_ <= start)
            return true;
        if (end_ > bytes_.size() || end_ - start < kChunkHead)
            return !isChunk(start, bytes_.size());
        return !isChunk(start, end_);
    }
    bool isChunk(std::uint64_t at, std::uint64_t end) {
        const Bytes head = bytes_.at(at, kChunkHead);
        return head.size() == kChunkHead && isName(head.first(4)) &&
               number(head, 4, 4) <= end - std::min(end, at + kChunkHead);
    }

    void judge() {
        if (!hasFormat_) {
            header_.problem = "it has no \"fmt \" chunk, which would say how the sound is written";
        } else if (header_.channels == 0) {
            header_.problem = "its header tells no channel";
        } else if (rate_ == 0 || rate_ > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) {
            header_.problem = "its header tells a rate of " + std::to_string(rate_) + " Hz";
        } else if (header_.problem.empty()) {
            header_.rate = static_cast<int>(rate_);
            header_.frames = soundBytes_.value_or(0) / header_.frameBytes();
            if (header_.frames == 0)
                header_.problem = "there is no sound in it";
        }
    }

    ByteWindow bytes_;
    WavHeader header_;
    bool hasLongLengths_ = false;
    bool hasFormat_ = false;
    std::uint64_t rate_ = 0;
    std::uint64_t end_ = 0; ///< of the whole, by the header's word
    std::optional<std::uint64_t> longLength_;
    std::optional<std::uint64_t> soundBytes_;
};
} // namespace

bool isWav(ByteWindow& bytes) {
    constexpr std::array<std::string_view, 4> kKinds{"RIFF", "RIFX", "RF64", "BW64"};
    const Bytes head = bytes.at(0, kFileHead);
    return head.size() == kFileHead && std::ranges::find(kKinds, nameAt(head, 0)) != kKinds.end() &&
           nameAt(head, 8) == "WAVE";
}

WavHeader readWavHeader(ByteSource& bytes) {
    return WavChunks(bytes).read();
}

} // namespace velmora
