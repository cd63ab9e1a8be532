// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavFile.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <sndfile.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <string_view>

namespace velmora {

void toSixteenBits(std::span<const float> from, std::int16_t* to) {
    constexpr float kScale = 32768.0F;
    constexpr float kLowest = -32768.0F;
    constexpr float kHighest = 32767.0F;
    // Floats of this size are whole numbers: adding it rounds, and leaves the result in the lowest 16 bits.
    constexpr float kWhole = 12'582'912.0F; // 1.5 * 2 to the 23rd
    for (const float sample : from) {
        const float scaled = sample == sample ? sample * kScale : 0.0F;
        const float within = std::clamp(scaled, kLowest, kHighest);
        *to++ = static_cast<std::int16_t>(std::bit_cast<std::uint32_t>(within + kWhole) & 0xFFFFU);
    }
}

namespace {
struct SoundFileLibrary : LateLibrary {
    SoundFileLibrary() : LateLibrary(kSoundFileLibrary) {}
    VELMORA_LATE_CALL(sf_close);
    VELMORA_LATE_CALL(sf_error_number);
    VELMORA_LATE_CALL(sf_open_fd);
    VELMORA_LATE_CALL(sf_strerror);
    VELMORA_LATE_CALL(sf_writef_short);
};

const SoundFileLibrary& library() {
    static const SoundFileLibrary only;
    return only;
}

constexpr std::size_t kFlushSamples = std::size_t{1} << 21; ///< 4 MiB: a few times a second at the most

/// libsndfile's words, without the frame that it puts around some of them.
std::string reason(std::string_view words) {
    for (const std::string_view frame : {"Error : ", "System error : "}) {
        if (words.starts_with(frame))
            words.remove_prefix(frame.size());
    }
    while (words.ends_with('.'))
        words.remove_suffix(1);
    return std::string(words);
}
} // namespace

struct WavFile::Writer {
    explicit Writer(SNDFILE* opened) : sound(opened) {}
    ~Writer() { library().sf_close(sound); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    SNDFILE* sound;
};

WavFile::WavFile(std::filesystem::path path, int sampleRate)
    : file_(std::move(path))
    , sampleRate_(sampleRate) {}
WavFile::~WavFile() = default;

std::string WavFile::open() {
    if (!library().complete())
        return file_.failure(library().problem());
    if (std::string error = file_.open(); !error.empty())
        return error;
    SF_INFO info{};
    info.samplerate = sampleRate_;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* sound = library().sf_open_fd(file_.descriptor(), SFM_WRITE, &info, SF_FALSE);
    if (!sound)
        return file_.failure(reason(library().sf_strerror(nullptr)));
    writer_ = std::make_unique<Writer>(sound);
    return {};
}

std::string WavFile::write(std::span<const float> interleaved) {
    if (samplesLeft_ < interleaved.size())
        return file_.failure("a WAV file holds 4 GiB at the most, about six hours and three quarters");
    samplesLeft_ -= interleaved.size();
    if (rounded_.size() < interleaved.size())
        rounded_.resize(interleaved.size());
    toSixteenBits(interleaved, rounded_.data());
    const auto frames = static_cast<sf_count_t>(interleaved.size() / 2);
    errno = 0;
    if (library().sf_writef_short(writer_->sound, rounded_.data(), frames) == frames) {
        unflushed_ += interleaved.size();
        if (unflushed_ >= kFlushSamples) {
            file_.beginFlushing();
            unflushed_ = 0;
        }
        return {};
    }
    return errno != 0 ? file_.failure(errno) : file_.failure(reason(library().sf_strerror(writer_->sound)));
}

std::string WavFile::finish() {
    const int code = library().sf_close(writer_->sound); // writes the lengths into the header
    writer_->sound = nullptr;
    writer_.reset();
    return code == 0 ? file_.commit() : file_.failure(reason(library().sf_error_number(code)));
}

} // namespace velmora
