// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrackSectors.h"

#include "studio/StereoReader.h"
#include "studio/WavFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

namespace {
constexpr int kFrameBytes = 4;
static_assert(std::endian::native == std::endian::little, "samples are written as they lie in memory");

std::string cantBeRead(const std::filesystem::path& file, std::string_view why) {
    return "\"" + file.string() + "\" can't be read: " + std::string(why) + ".";
}

/// A file that ends with this.
class Descriptor {
public:
    explicit Descriptor(const std::filesystem::path& file) : fd_(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Descriptor() {
        if (fd_ >= 0)
            close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
    /// As many bytes as there are from @p offset on, at most all of @p to.
    [[nodiscard]] std::size_t readAt(std::int64_t offset, std::span<std::byte> to) const {
        std::size_t got = 0;
        while (got < to.size()) {
            const ssize_t count =
                pread(fd_, to.data() + got, to.size() - got, offset + static_cast<off_t>(got));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                break;
            got += static_cast<std::size_t>(count);
        }
        return got;
    }

private:
    int fd_;
};

std::uint32_t wordAt(std::span<const std::byte> bytes, std::size_t at) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

std::string_view nameAt(std::span<const std::byte> bytes, std::size_t at) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, 4};
}

/// Where the samples of a little-endian WAV file begin.
std::optional<std::int64_t> soundBegins(const Descriptor& file) {
    std::array<std::byte, 12> head{};
    if (file.readAt(0, head) < head.size() || nameAt(head, 8) != "WAVE" ||
        (nameAt(head, 0) != "RIFF" && nameAt(head, 0) != "RF64"))
        return std::nullopt;
    constexpr int kMostChunks = 1000;
    std::int64_t at = 12;
    for (int chunk = 0; chunk < kMostChunks; ++chunk) {
        std::array<std::byte, 8> chunkHead{};
        if (file.readAt(at, chunkHead) < chunkHead.size())
            break;
        if (nameAt(chunkHead, 0) == "data")
            return at + 8;
        const std::int64_t length = wordAt(chunkHead, 4);
        at += 8 + length + length % 2;
    }
    return std::nullopt;
}

/// Whether the bytes from @p begin on are what the reader gives, at both ends: then nothing needs to be
/// turned into floats and back.
bool areTheSamples(const Descriptor& file, std::int64_t begin, SoundReader& reader) {
    constexpr std::int64_t kProbe = 256; // frames
    const std::int64_t frames = reader.info().frames;
    for (const std::int64_t from : {std::int64_t{0}, std::max<std::int64_t>(0, frames - kProbe)}) {
        const auto count = static_cast<std::size_t>(std::min(kProbe, frames));
        std::vector<float> heard(count * 2);
        std::vector<std::int16_t> rounded(heard.size());
        std::vector<std::int16_t> stored(heard.size());
        reader.seek(from);
        if (reader.read(heard) != count ||
            file.readAt(begin + from * kFrameBytes, std::as_writable_bytes(std::span(stored))) !=
                stored.size() * sizeof(std::int16_t))
            return false;
        toSixteenBits(heard, rounded.data());
        if (rounded != stored)
            return false;
    }
    reader.seek(0);
    return true;
}
} // namespace

/// Where the bytes of the sound come from.
struct TrackSectors::Source {
    virtual ~Source() = default;
    /// Fewer than asked for at the end alone.
    virtual std::size_t read(std::span<std::byte> to) = 0;
};

struct TrackSectors::PlainSource : Source {
    PlainSource(std::unique_ptr<Descriptor> from, std::int64_t begin) : file(std::move(from)), at(begin) {}
    std::size_t read(std::span<std::byte> to) override {
        const std::size_t got = file->readAt(at, to);
        at += static_cast<std::int64_t>(got);
        return got;
    }
    std::unique_ptr<Descriptor> file;
    std::int64_t at;
};

struct TrackSectors::ConvertedSource : Source {
    explicit ConvertedSource(std::unique_ptr<SoundReader> from) : reader(std::move(from), kCdRate) {}
    std::size_t read(std::span<std::byte> to) override {
        heard.resize(to.size() / kFrameBytes * 2);
        rounded.resize(heard.size());
        const std::size_t frames = reader.read(heard);
        toSixteenBits(std::span(heard).first(frames * 2), rounded.data());
        std::memcpy(to.data(), rounded.data(), frames * kFrameBytes);
        return frames * kFrameBytes;
    }
    StereoReader reader;
    std::vector<float> heard;
    std::vector<std::int16_t> rounded;
};

TrackSectors::TrackSectors(CdTrack track) : track_(std::move(track)) {}
TrackSectors::~TrackSectors() = default;

std::string TrackSectors::open() {
    OpenedSound opened = openSound(track_.file);
    if (!opened.reader)
        return opened.error;
    const SoundInfo info = opened.reader->info();
    if (info.frames != track_.sound.frames || info.rate != track_.sound.rate)
        return cantBeRead(track_.file, "it has changed since it was listed");
    left_ = track_.sectors * kSectorBytes;
    soundLeft_ = (info.frames * kCdRate + info.rate / 2) / info.rate * kFrameBytes;
    if (info.kind == SoundKind::Wav && info.rate == kCdRate && info.channels == 2 && info.bits == 16 &&
        !info.isFloat) {
        auto file = std::make_unique<Descriptor>(track_.file);
        const auto begin = file->isOpen() ? soundBegins(*file) : std::nullopt;
        if (begin && areTheSamples(*file, *begin, *opened.reader)) {
            source_ = std::make_unique<PlainSource>(std::move(file), *begin);
            return {};
        }
        opened = openSound(track_.file); // the probe has moved it
        if (!opened.reader)
            return opened.error;
    }
    source_ = std::make_unique<ConvertedSource>(std::move(opened.reader));
    return {};
}

std::size_t TrackSectors::read(std::span<std::byte> to) {
    if (!problem_.empty() || !source_)
        return 0;
    to = to.first(static_cast<std::size_t>(std::min(static_cast<std::int64_t>(to.size()), left_)));
    const auto sound = static_cast<std::size_t>(std::min(static_cast<std::int64_t>(to.size()), soundLeft_));
    if (sound > 0 && source_->read(to.first(sound)) < sound) {
        problem_ = cantBeRead(track_.file, "its sound ends too early");
        return 0;
    }
    std::ranges::fill(to.subspan(sound), std::byte{0});
    soundLeft_ -= static_cast<std::int64_t>(sound);
    left_ -= static_cast<std::int64_t>(to.size());
    return to.size();
}

} // namespace velmora
