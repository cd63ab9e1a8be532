// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrackSectors.h"

#include "studio/DiscSound.h"
#include "studio/StereoReader.h"
#include "studio/WavFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>
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
    if (const auto plain = discSound(track_.file);
        plain && plain->bytes == static_cast<std::uint64_t>(soundLeft_)) {
        auto file = std::make_unique<Descriptor>(track_.file);
        if (!file->isOpen())
            return cantBeRead(track_.file, std::generic_category().message(errno));
        source_ = std::make_unique<PlainSource>(std::move(file), static_cast<std::int64_t>(plain->offset));
        return {};
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
