// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/OtherFormats.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/PendingFile.h"
#include "base/Text.h"
#include "studio/FittingSink.h"
#include "studio/SoundReader.h"
#include "studio/WavFile.h"

#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <utility>
#include <vector>

namespace velmora {

namespace fs = std::filesystem;

namespace {
struct SoundFileLibrary : LateLibrary {
    SoundFileLibrary() : LateLibrary(kSoundFileLibrary) {}
    VELMORA_LATE_CALL(sf_close);
    VELMORA_LATE_CALL(sf_command);
    VELMORA_LATE_CALL(sf_error_number);
    VELMORA_LATE_CALL(sf_open_virtual);
    VELMORA_LATE_CALL(sf_set_string);
    VELMORA_LATE_CALL(sf_strerror);
    VELMORA_LATE_CALL(sf_writef_float);
    VELMORA_LATE_CALL(sf_writef_int);
    VELMORA_LATE_CALL(sf_writef_short);
};

const SoundFileLibrary& library() {
    static const SoundFileLibrary only;
    return only;
}

/// libsndfile's hands on a file. It doesn't tell every write that fails, so the first is kept here.
struct Handle {
    int descriptor = -1;
    int failure = 0; ///< a code as in errno

    static sf_count_t length(void* user) {
        auto* self = static_cast<Handle*>(user);
        const off_t here = lseek(self->descriptor, 0, SEEK_CUR);
        const off_t end = lseek(self->descriptor, 0, SEEK_END);
        lseek(self->descriptor, here, SEEK_SET);
        return end;
    }
    static sf_count_t seek(sf_count_t offset, int from, void* user) {
        return lseek(static_cast<Handle*>(user)->descriptor, offset, from);
    }
    static sf_count_t read(void* to, sf_count_t count, void* user) {
        const ssize_t got =
            ::read(static_cast<Handle*>(user)->descriptor, to, static_cast<std::size_t>(count));
        return std::max<ssize_t>(0, got);
    }
    static sf_count_t write(const void* from, sf_count_t count, void* user) {
        auto* self = static_cast<Handle*>(user);
        sf_count_t done = 0;
        while (done < count) {
            const ssize_t wrote = ::write(self->descriptor, static_cast<const char*>(from) + done,
                                          static_cast<std::size_t>(count - done));
            if (wrote < 0 && errno == EINTR)
                continue;
            if (wrote <= 0) {
                self->failure = self->failure != 0 ? self->failure : (wrote == 0 ? ENOSPC : errno);
                break;
            }
            done += wrote;
        }
        return done;
    }
    static sf_count_t tell(void* user) { return lseek(static_cast<Handle*>(user)->descriptor, 0, SEEK_CUR); }
};

int codeOf(const SoundFileOptions& options) {
    switch (options.format) {
    case SoundFormat::Flac:
        return SF_FORMAT_FLAC | (options.bits > 16 ? SF_FORMAT_PCM_24 : SF_FORMAT_PCM_16);
    case SoundFormat::Vorbis:
        return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    case SoundFormat::Opus:
        return SF_FORMAT_OGG | SF_FORMAT_OPUS;
    case SoundFormat::Wav:
        break;
    }
    const int container = options.isHuge ? SF_FORMAT_RF64 : SF_FORMAT_WAV;
    if (options.isFloat)
        return container | SF_FORMAT_FLOAT;
    return container | (options.bits > 24   ? SF_FORMAT_PCM_32
                        : options.bits > 16 ? SF_FORMAT_PCM_24
                                            : SF_FORMAT_PCM_16);
}

int rateOf(SoundFormat format, int rate) {
    constexpr std::array kOpusRates{8000, 12000, 16000, 24000, 48000};
    constexpr int kUsualRate = 44100;
    switch (format) {
    case SoundFormat::Opus:
        return std::ranges::find(kOpusRates, rate) != kOpusRates.end() ? rate : 48000;
    case SoundFormat::Vorbis:
        return rate >= 8000 && rate <= 192'000 ? rate : kUsualRate;
    case SoundFormat::Flac: // what every decoder reads
        return rate <= 65'535 || (rate <= 655'350 && rate % 10 == 0) ? rate : kUsualRate;
    case SoundFormat::Wav:
        break;
    }
    return rate;
}

constexpr double kLossyQuality = 0.6; ///< of 1: about 190 kbit/s of Vorbis

/// The sink itself, of the rate and channels of the file.
class SoundFile : public SampleSink {
public:
    SoundFile(const fs::path& path, SoundFileOptions options, int rate, int channels)
        : file_(path)
        , options_(std::move(options))
        , rate_(rate)
        , channels_(channels) {}
    ~SoundFile() override {
        if (sound_)
            library().sf_close(sound_);
    }
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;

    std::string open() override {
        if (!library().complete())
            return file_.failure(library().problem());
        if (std::string error = file_.open(); !error.empty())
            return error;
        handle_.descriptor = file_.descriptor();
        SF_INFO info{};
        info.samplerate = rate_;
        info.channels = channels_;
        info.format = codeOf(options_);
        SF_VIRTUAL_IO calls{Handle::length, Handle::seek, Handle::read, Handle::write, Handle::tell};
        sound_ = library().sf_open_virtual(&calls, SFM_WRITE, &info, &handle_);
        if (!sound_)
            return failure(library().sf_strerror(nullptr));
        double quality = kLossyQuality;
        library().sf_command(sound_, SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
        if (!options_.title.empty())
            library().sf_set_string(sound_, SF_STR_TITLE, options_.title.c_str());
        if (!options_.artist.empty())
            library().sf_set_string(sound_, SF_STR_ARTIST, options_.artist.c_str());
        return {};
    }

    std::string write(std::span<const float> interleaved) override {
        // libsndfile's Vorbis takes a block's room from the stack.
        const std::size_t most = std::size_t{4096} * static_cast<std::size_t>(channels_);
        while (!interleaved.empty()) {
            const auto block = interleaved.first(std::min(most, interleaved.size()));
            const auto frames = static_cast<sf_count_t>(block.size()) / channels_;
            if (put(block, frames) != frames || handle_.failure != 0)
                return failure(library().sf_strerror(sound_));
            interleaved = interleaved.subspan(block.size());
        }
        return {};
    }

    std::string finish() override {
        const int code = library().sf_close(std::exchange(sound_, nullptr));
        if (code != 0 || handle_.failure != 0)
            return failure(library().sf_error_number(code));
        return file_.commit();
    }

private:
    [[nodiscard]] std::string failure(const char* words) const {
        return handle_.failure != 0 ? file_.failure(handle_.failure) : file_.failure(std::string(words));
    }

    sf_count_t put(std::span<const float> block, sf_count_t frames) {
        const bool isLossy = options_.format == SoundFormat::Vorbis || options_.format == SoundFormat::Opus;
        if (isLossy || options_.isFloat)
            return library().sf_writef_float(sound_, block.data(), frames);
        if (options_.bits <= 16) {
            short_.resize(block.size());
            toSixteenBits(block, short_.data());
            return library().sf_writef_short(sound_, short_.data(), frames);
        }
        const double scale = std::exp2(options_.bits - 1);
        const int spare = 32 - options_.bits; // bits that the file hasn't, below those that it has
        long_.resize(block.size());
        std::ranges::transform(block, long_.begin(), [&](float value) {
            const double wide =
                value == value ? std::clamp(std::nearbyint(value * scale), -scale, scale - 1) : 0;
            return static_cast<int>(static_cast<std::int64_t>(wide) << spare);
        });
        return library().sf_writef_int(sound_, long_.data(), frames);
    }

    PendingFile file_;
    SoundFileOptions options_;
    int rate_;
    int channels_;
    Handle handle_;
    SNDFILE* sound_ = nullptr;
    std::vector<std::int16_t> short_;
    std::vector<int> long_;
};
} // namespace

std::optional<SoundFormat> otherFormat(const fs::path& file) {
    const auto* const found =
        std::ranges::find(kOtherFormats, toLower(file.extension().string()), &OtherFormat::extension);
    return found != kOtherFormats.end() ? std::optional(found->format) : std::nullopt;
}

std::unique_ptr<SampleSink> makeSoundFileSink(const fs::path& file, SoundFileOptions options, int rate,
                                              int channels) {
    const SoundFit fit{.rate = rate,
                       .channels = channels,
                       .wantedRate = rateOf(options.format, rate),
                       .wantedChannels = channels == 1 ? 1 : 2};
    auto sink = std::make_unique<SoundFile>(file, std::move(options), fit.wantedRate, fit.wantedChannels);
    return std::make_unique<FittingSink>(std::move(sink), fit, file);
}

EncodeOutcome encodeByName(const EncodeJob& job, const std::function<void(double)>& progress,
                           const std::stop_token& cancel) {
    const auto format = otherFormat(job.mp3);
    if (!format)
        return encode(job, progress, cancel);
    const auto told = [](const std::string& wanted, const std::string& own) {
        return wanted.empty() ? own : wanted;
    };
    return encodeThrough(
        job,
        [&](const SoundInfo& info) {
            return makeSoundFileSink(job.mp3,
                                     {.format = *format,
                                      .bits = info.bits > 16 ? 24 : 16,
                                      .title = told(job.settings.title, info.title),
                                      .artist = told(job.settings.artist, info.artist)},
                                     info.rate, info.channels);
        },
        progress, cancel);
}

} // namespace velmora
