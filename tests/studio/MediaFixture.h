// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/VirtualMix.h"
#include "studio/MediaDevices.h"

#include <QTemporaryDir>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace velmora::testmedia {

inline void put(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i));
}

/// A 16-bit WAV file of these samples, interleaved.
inline std::filesystem::path writeWav(const std::filesystem::path& file,
                                      const std::vector<std::int16_t>& samples, std::uint32_t rate = 44100,
                                      std::uint32_t channels = 2) {
    const auto size = static_cast<std::uint32_t>(2 * samples.size());
    std::string bytes = "RIFF";
    put(bytes, 36 + size, 4);
    bytes += "WAVEfmt ";
    put(bytes, 16, 4);
    put(bytes, 1, 2);
    put(bytes, channels, 2);
    put(bytes, rate, 4);
    put(bytes, rate * 2 * channels, 4);
    put(bytes, 2 * channels, 2);
    put(bytes, 16, 2);
    bytes += "data";
    put(bytes, size, 4);
    for (const std::int16_t sample : samples)
        put(bytes, static_cast<std::uint16_t>(sample), 2);
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

/// A MIDI file of one quarter note at 120 a minute, and as much silence behind it.
inline std::filesystem::path writeMidi(const std::filesystem::path& file) {
    using namespace std::string_view_literals;
    std::ofstream(file, std::ios::binary) << "MThd\0\0\0\6\0\0\0\1\0\60"
                                             "MTrk\0\0\0\14\0\x90\x40\x7F\60\x80\x40\0\60\xFF\x2F\0"sv;
    return file;
}

/// Values that no two frames share, within full scale.
inline std::vector<std::int16_t> ramp(int frames, int from = 0) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < frames; ++i)
        for (const int side : {1, -1})
            samples.push_back(static_cast<std::int16_t>(side * (1 + (from + i) % 30000)));
    return samples;
}

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The samples of a 16-bit WAV file of 44 bytes of header.
inline std::vector<std::int16_t> samplesOf(const std::filesystem::path& file) {
    const std::string bytes = bytesOf(file);
    std::vector<std::int16_t> samples;
    for (std::size_t i = 44; i + 1 < bytes.size(); i += 2)
        samples.push_back(static_cast<std::int16_t>(static_cast<unsigned char>(bytes[i]) |
                                                    static_cast<unsigned char>(bytes[i + 1]) << 8));
    return samples;
}

/// Media devices on a clock that jumps.
struct MediaFixture {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    VirtualMix mix;
    MediaDevices media{mix, mix, [] { return std::filesystem::path("/usr/share/sounds/sf2/TimGM6mb.sf2"); }};

    /// What a line is answered with: "Success", with a blank and the value behind it, or the error.
    std::string send(const std::string& line) {
        const MediaAnswer answer = media.send(line);
        return answer.text() + (answer.value.empty() ? "" : " " + answer.value);
    }
    [[nodiscard]] std::string path(const char* name) const { return (folder / name).string(); }
    /// Opens a file of so many frames as player m.
    std::string openSong(int frames = 44100, std::uint32_t rate = 44100) {
        const auto file = writeWav(folder / "song.wav", ramp(frames), rate);
        return send("open " + file.string() + " type MPEGVideo alias m");
    }
};

} // namespace velmora::testmedia
