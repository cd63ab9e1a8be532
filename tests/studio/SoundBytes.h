// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

/// Sound files as bytes, whole and broken ones.
namespace velmora::soundbytes {

/// Puts numbers behind each other, in one order of bytes or the other.
class ByteWriter {
public:
    explicit ByteWriter(bool bigEndian = false) : bigEndian_(bigEndian) {}

    ByteWriter& number(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> (8 * (bigEndian_ ? bytes - 1 - i : i)) & 0xFFU);
        return *this;
    }
    ByteWriter& raw(std::string_view bytes) {
        text += bytes;
        return *this;
    }

    std::string text;

private:
    bool bigEndian_;
};

/// The numbers of a "fmt " chunk; those that follow from others are right unless they are given.
struct WavFormat {
    int code = 1;
    int channels = 2;
    std::uint32_t rate = 44100;
    int bits = 16;
    int alignment = -1;
    std::int64_t bytesPerSecond = -1;
    bool isExtensible = false;
};

struct Wav {
    std::string kind = "RIFF";
    std::string chunks = {}; ///< all of them

    [[nodiscard]] bool isBig() const { return kind == "RIFX"; }
    /// @param length what the chunk says of itself; its own length if it is less than 0
    Wav& chunk(std::string_view name, std::string_view content, std::int64_t length = -1) {
        const auto told = length < 0 ? content.size() : static_cast<std::uint64_t>(length);
        ByteWriter out(isBig());
        out.raw(name).number(told, 4).raw(content);
        if (length < 0 && content.size() % 2 == 1)
            out.number(0, 1);
        chunks += out.text;
        return *this;
    }
    Wav& format(const WavFormat& what = {}) {
        const int alignment = what.alignment < 0 ? what.channels * what.bits / 8 : what.alignment;
        const auto bytes = what.bytesPerSecond < 0 ? static_cast<std::uint64_t>(alignment) * what.rate
                                                   : static_cast<std::uint64_t>(what.bytesPerSecond);
        ByteWriter out(isBig());
        out.number(static_cast<std::uint64_t>(what.isExtensible ? 0xFFFE : what.code), 2)
            .number(static_cast<std::uint64_t>(what.channels), 2)
            .number(what.rate, 4)
            .number(bytes, 4)
            .number(static_cast<std::uint64_t>(alignment), 2)
            .number(static_cast<std::uint64_t>(what.bits), 2);
        if (what.isExtensible) {
            out.number(22, 2).number(static_cast<std::uint64_t>(what.bits), 2).number(3, 4);
            out.number(static_cast<std::uint64_t>(what.code), 4).number(0, 2).number(0x10, 2);
            out.raw(std::string_view("\x80\0\0\xAA\0\x38\x9B\x71", 8));
        }
        return chunk("fmt ", out.text);
    }
    /// @param length as the file tells it; its own if it is less than 0
    [[nodiscard]] std::string bytes(std::int64_t length = -1) const {
        const auto told = length < 0 ? chunks.size() + 4 : static_cast<std::uint64_t>(length);
        return ByteWriter(isBig()).raw(kind).number(told, 4).raw("WAVE").raw(chunks).text;
    }
};

/// 16-bit values, little-endian unless told otherwise.
inline std::string sixteenBits(const std::vector<int>& values, bool bigEndian = false) {
    ByteWriter out(bigEndian);
    for (const int value : values)
        out.number(static_cast<std::uint64_t>(value), 2);
    return out.text;
}

/// A text's bytes as a source, which lives as long as this.
struct Held {
    explicit Held(std::string bytes)
        : text(std::move(bytes))
        , source({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    std::string text;
    MemoryBytes source;
};

/// The same for who wants to own a source.
class OwnBytes : public ByteSource {
public:
    explicit OwnBytes(std::string bytes) : ByteSource(bytes.size()), held_(std::move(bytes)) {}
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> to) override {
        return held_.source.read(offset, to);
    }

private:
    Held held_;
};

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// A frame of an MP3 stream that is silent: its header, and zeros. Four bits of @p bitrate and two of
/// @p rate stand in it as they are.
inline std::string mp3Frame(std::size_t length, unsigned bitrate = 9, unsigned rate = 0, unsigned mode = 0,
                            unsigned version = 3) {
    std::string frame(length, '\0');
    frame[0] = '\xFF';
    frame[1] = static_cast<char>(0xE3U | version << 3);
    frame[2] = static_cast<char>(bitrate << 4 | rate << 2);
    frame[3] = static_cast<char>(mode << 6);
    return frame;
}
inline constexpr std::size_t kFrameOf128 = 417; ///< bytes of such a frame at 128 kbit/s and 44,100 Hz

/// The head of an ID3v2 tag.
inline std::string id3Head(std::size_t length, int version = 3, unsigned flags = 0) {
    std::string head = "ID3";
    head += static_cast<char>(version);
    head += '\0';
    head += static_cast<char>(flags);
    for (const int shift : {21, 14, 7, 0})
        head += static_cast<char>(length >> shift & 0x7FU);
    return head;
}

} // namespace velmora::soundbytes
