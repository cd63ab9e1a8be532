// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/modLAME.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <lame/lame.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <mutex>
#include <vector>

namespace velmora {

namespace {
struct LameLibrary : LateLibrary {
    LameLibrary() : LateLibrary(kLameLibrary) {}
    VELMORA_LATE_CALL(lame_close);
    VELMORA_LATE_CALL(lame_encode_buffer_float);
    VELMORA_LATE_CALL(lame_encode_flush);
    VELMORA_LATE_CALL(lame_get_framesize);
    VELMORA_LATE_CALL(lame_get_lametag_frame);
    VELMORA_LATE_CALL(lame_init);
    VELMORA_LATE_CALL(lame_init_params);
    VELMORA_LATE_CALL(lame_set_VBR);
    VELMORA_LATE_CALL(lame_set_bWriteVbrTag);
    VELMORA_LATE_CALL(lame_set_brate);
    VELMORA_LATE_CALL(lame_set_copyright);
    VELMORA_LATE_CALL(lame_set_debugf);
    VELMORA_LATE_CALL(lame_set_emphasis);
    VELMORA_LATE_CALL(lame_set_errorf);
    VELMORA_LATE_CALL(lame_set_in_samplerate);
    VELMORA_LATE_CALL(lame_set_mode);
    VELMORA_LATE_CALL(lame_set_msgf);
    VELMORA_LATE_CALL(lame_set_num_channels);
    VELMORA_LATE_CALL(lame_set_original);
    VELMORA_LATE_CALL(lame_set_out_samplerate);
    VELMORA_LATE_CALL(lame_set_quality);
    VELMORA_LATE_CALL(lame_set_write_id3tag_automatic);
};

const LameLibrary& library() {
    static const LameLibrary only;
    return only;
}

void sayNothing(const char* /*format*/, va_list /*values*/) {}

constexpr std::array<std::string_view, 6> kErrorTexts{
    "No Error",        "Invalid format", "Invalid format parameters",
    "No more handles", "Invalid handle", "Buffer too small"};

/// LAME's rule for the room that a block may need.
constexpr std::size_t roomFor(std::size_t frames) {
    return frames + frames / 4 + 7200;
}

/// LAME takes nonsense in silence, and chooses what is near.
int check(const EncoderRecord& record) {
    const EncoderRecord known;
    if (record.dwConfig != known.dwConfig || record.dwStructVersion != known.dwStructVersion ||
        record.dwStructSize != known.dwStructSize)
        return kBeInvalidFormat;
    const auto among = [](const auto& table, auto value) {
        return std::ranges::find(table, value) != table.end();
    };
    const int rate = static_cast<int>(record.dwSampleRate);
    const int bitrate = static_cast<int>(record.dwBitrate);
    const bool fits = among(kMp3Rates, rate) && among(kMp3Bitrates, bitrate) &&
                      bitrateAt(rate, bitrate) == bitrate && effortOf(record.nPreset) &&
                      (record.nMode == kJointStereo || record.nMode == kMono) && record.dwReSampleRate == 0 &&
                      record.nVbrMethod == -1 && record.dwEmphasis == 0;
    return fits ? kBeSuccessful : kBeInvalidFormatParameters;
}

bool configure(lame_global_flags* lame, const EncoderRecord& record, int channels) {
    const LameLibrary& call = library();
    const int rate = static_cast<int>(record.dwSampleRate);
    call.lame_set_errorf(lame, sayNothing);
    call.lame_set_debugf(lame, sayNothing);
    call.lame_set_msgf(lame, sayNothing);
    call.lame_set_in_samplerate(lame, rate);
    call.lame_set_out_samplerate(lame, rate); // otherwise a low bitrate makes it choose another
    call.lame_set_num_channels(lame, channels);
    call.lame_set_mode(lame, record.nMode == kMono ? MONO : JOINT_STEREO);
    call.lame_set_VBR(lame, vbr_off);
    call.lame_set_brate(lame, static_cast<int>(record.dwBitrate));
    call.lame_set_quality(lame, *effortOf(record.nPreset));
    call.lame_set_emphasis(lame, static_cast<int>(record.dwEmphasis));
    call.lame_set_copyright(lame, record.bCopyright != 0 ? 1 : 0);
    call.lame_set_original(lame, record.bOriginal != 0 ? 1 : 0);
    call.lame_set_bWriteVbrTag(lame, record.hasInfoFrame ? 1 : 0);
    call.lame_set_write_id3tag_automatic(lame, 0); // tags are Id3Tag's
    // Starting fills tables that all streams share, with the same values each time.
    static std::mutex one;
    const std::lock_guard lock(one);
    return call.lame_init_params(lame) >= 0;
}
} // namespace

std::string_view beErrorText(int code) {
    return code >= 0 && code < static_cast<int>(kErrorTexts.size())
               ? kErrorTexts[static_cast<std::size_t>(code)]
               : std::string_view();
}

const std::string& lameProblem() {
    return library().problem();
}

struct LameStream::Parts {
    Parts(lame_global_flags* started, int channelCount)
        : lame(started)
        , channels(static_cast<std::size_t>(channelCount)) {}
    ~Parts() { library().lame_close(lame); }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    /// A block is a frame of MP3.
    void prepare() {
        frames = static_cast<std::size_t>(library().lame_get_framesize(lame));
        for (std::vector<float>& side : sides)
            side.resize(frames);
    }

    /// @param wide of a value in steps of 16 bits
    template<typename Value, typename Wide>
    int encode(std::span<const Value> input, std::span<unsigned char> output, std::uint32_t& written,
               Wide wide) {
        const std::size_t count = input.size() / channels;
        if (count > frames)
            return kBeInvalidFormatParameters;
        if (output.size() < roomFor(count))
            return kBeBufferTooSmall;
        for (std::size_t side = 0; side < channels; ++side)
            for (std::size_t i = 0; i < count; ++i)
                sides[side][i] = wide(input[i * channels + side]);
        return took(library().lame_encode_buffer_float(lame, sides[0].data(), sides[1].data(),
                                                       static_cast<int>(count), output.data(),
                                                       static_cast<int>(output.size())),
                    written);
    }

    int end(std::span<unsigned char> output, std::uint32_t& written) {
        if (output.size() < roomFor(0))
            return kBeBufferTooSmall;
        return took(library().lame_encode_flush(lame, output.data(), static_cast<int>(output.size())),
                    written);
    }

    static int took(int count, std::uint32_t& written) {
        constexpr int kNoRoom = -1;
        if (count < 0)
            return count == kNoRoom ? kBeBufferTooSmall : kBeInvalidHandle;
        written = static_cast<std::uint32_t>(count);
        return kBeSuccessful;
    }

    lame_global_flags* lame;
    std::size_t channels;
    std::size_t frames = 0; ///< the most of a block
    std::array<std::vector<float>, 2> sides;
};

LameStream::LameStream() = default;
LameStream::~LameStream() = default;
LameStream::LameStream(LameStream&&) noexcept = default;
LameStream& LameStream::operator=(LameStream&&) noexcept = default;

int beInitStream(const EncoderRecord& record, std::uint32_t& samples, std::uint32_t& outputSize,
                 LameStream& stream) {
    stream.parts.reset();
    samples = 0;
    outputSize = 0;
    if (const int code = check(record); code != kBeSuccessful)
        return code;
    if (!library().complete())
        return kBeNoMoreHandles;
    lame_global_flags* lame = library().lame_init();
    if (!lame)
        return kBeNoMoreHandles;
    const int channels = record.nMode == kMono ? 1 : 2;
    auto parts = std::make_unique<LameStream::Parts>(lame, channels);
    if (!configure(lame, record, channels))
        return kBeInvalidFormatParameters;
    parts->prepare();
    samples = static_cast<std::uint32_t>(parts->frames * parts->channels);
    outputSize = static_cast<std::uint32_t>(roomFor(parts->frames));
    stream.parts = std::move(parts);
    return kBeSuccessful;
}

int beEncodeChunk(LameStream& stream, std::span<const std::int16_t> input, std::span<unsigned char> output,
                  std::uint32_t& written) {
    written = 0;
    if (!stream.parts)
        return kBeInvalidHandle;
    return stream.parts->encode(input, output, written,
                                [](std::int16_t value) { return static_cast<float>(value); });
}

int beEncodeChunk(LameStream& stream, std::span<const float> input, std::span<unsigned char> output,
                  std::uint32_t& written) {
    written = 0;
    if (!stream.parts)
        return kBeInvalidHandle;
    return stream.parts->encode(input, output, written, [](float value) {
        constexpr float kSteps = 32768.0F;
        return value == value ? std::clamp(value, -1.0F, 1.0F) * kSteps : 0.0F;
    });
}

int beDeinitStream(LameStream& stream, std::span<unsigned char> output, std::uint32_t& written) {
    written = 0;
    return stream.parts ? stream.parts->end(output, written) : kBeInvalidHandle;
}

int beCloseStream(LameStream& stream) {
    if (!stream.parts)
        return kBeInvalidHandle;
    stream.parts.reset();
    return kBeSuccessful;
}

std::size_t infoFrame(const LameStream& stream, std::span<unsigned char> output) {
    if (!stream.parts)
        return 0;
    const std::size_t size =
        library().lame_get_lametag_frame(stream.parts->lame, output.data(), output.size());
    return size <= output.size() ? size : 0;
}

} // namespace velmora
