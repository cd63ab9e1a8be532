// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3File.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <lame/lame.h>

#include <algorithm>
#include <cstdarg>

namespace velmora {

namespace {
struct LameLibrary : LateLibrary {
    LameLibrary() : LateLibrary(kLameLibrary) {}
    VELMORA_LATE_CALL(lame_close);
    VELMORA_LATE_CALL(lame_encode_buffer_interleaved_ieee_float);
    VELMORA_LATE_CALL(lame_encode_flush);
    VELMORA_LATE_CALL(lame_get_lametag_frame);
    VELMORA_LATE_CALL(lame_init);
    VELMORA_LATE_CALL(lame_init_params);
    VELMORA_LATE_CALL(lame_set_brate);
    VELMORA_LATE_CALL(lame_set_debugf);
    VELMORA_LATE_CALL(lame_set_errorf);
    VELMORA_LATE_CALL(lame_set_in_samplerate);
    VELMORA_LATE_CALL(lame_set_mode);
    VELMORA_LATE_CALL(lame_set_msgf);
    VELMORA_LATE_CALL(lame_set_num_channels);
    VELMORA_LATE_CALL(lame_set_quality);
};

const LameLibrary& library() {
    static const LameLibrary only;
    return only;
}

void sayNothing(const char* /*format*/, va_list /*values*/) {}

/// LAME's rule for the room that a block may need.
std::size_t roomFor(std::size_t frames) {
    return frames + frames / 4 + 7200;
}

std::string whyNot(const Mp3Options& options) {
    if (std::find(kMp3Bitrates.begin(), kMp3Bitrates.end(), options.bitrate) != kMp3Bitrates.end())
        return {};
    std::string text = "MP3 has no bitrate of " + std::to_string(options.bitrate) + " kbit/s; it has";
    for (const int bitrate : kMp3Bitrates)
        text += (bitrate == kMp3Bitrates.front() ? " " : ", ") + std::to_string(bitrate);
    return text + ".";
}
} // namespace

void Mp3File::Deleter::operator()(lame_global_struct* encoder) const {
    library().lame_close(encoder);
}

Mp3File::Mp3File(std::filesystem::path path, Mp3Options options)
    : file_(std::move(path))
    , options_(options) {}
Mp3File::~Mp3File() = default;

std::string Mp3File::open() {
    if (std::string error = whyNot(options_); !error.empty())
        return error;
    if (!library().complete())
        return file_.failure(library().problem());
    encoder_.reset(library().lame_init());
    if (!encoder_)
        return file_.failure("the MP3 encoder does not start");
    lame_global_flags* lame = encoder_.get();
    library().lame_set_errorf(lame, sayNothing);
    library().lame_set_debugf(lame, sayNothing);
    library().lame_set_msgf(lame, sayNothing);
    library().lame_set_in_samplerate(lame, options_.sampleRate);
    library().lame_set_num_channels(lame, 2);
    library().lame_set_mode(lame, JOINT_STEREO);
    library().lame_set_brate(lame, options_.bitrate);
    library().lame_set_quality(lame, options_.effort);
    if (library().lame_init_params(lame) < 0)
        return file_.failure("the MP3 encoder refuses this sample rate");
    return file_.open();
}

std::string Mp3File::write(std::span<const float> interleaved) {
    const std::size_t frames = interleaved.size() / 2;
    if (encoded_.size() < roomFor(frames))
        encoded_.resize(roomFor(frames));
    return append(library().lame_encode_buffer_interleaved_ieee_float(
        encoder_.get(), interleaved.data(), static_cast<int>(frames), encoded_.data(),
        static_cast<int>(encoded_.size())));
}

std::string Mp3File::finish() {
    encoded_.resize(std::max(encoded_.size(), roomFor(0)));
    const int size = static_cast<int>(encoded_.size());
    if (std::string error = append(library().lame_encode_flush(encoder_.get(), encoded_.data(), size));
        !error.empty())
        return error;
    const std::size_t tag =
        library().lame_get_lametag_frame(encoder_.get(), encoded_.data(), encoded_.size());
    if (tag <= encoded_.size()) {
        std::string error = file_.overwrite(0, std::as_bytes(std::span(encoded_).first(tag)));
        if (!error.empty())
            return error;
    }
    return file_.commit();
}

std::string Mp3File::append(int encoded) {
    if (encoded < 0)
        return file_.failure("the MP3 encoder reports error " + std::to_string(-encoded));
    return file_.write(std::as_bytes(std::span(encoded_).first(static_cast<std::size_t>(encoded))));
}

} // namespace velmora
