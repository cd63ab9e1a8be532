// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Decoder.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <mpg123.h>

#include <algorithm>

namespace velmora {

namespace {
struct Mpg123Library : LateLibrary {
    Mpg123Library() : LateLibrary(kMpg123Library) {
        if (complete())
            mpg123_init(); // does something in old versions
    }
    VELMORA_LATE_CALL(mpg123_decode);
    VELMORA_LATE_CALL(mpg123_delete);
    VELMORA_LATE_CALL(mpg123_format);
    VELMORA_LATE_CALL(mpg123_format_none);
    VELMORA_LATE_CALL(mpg123_init);
    VELMORA_LATE_CALL(mpg123_new);
    VELMORA_LATE_CALL(mpg123_open_feed);
    VELMORA_LATE_CALL(mpg123_param);
};

const Mpg123Library& library() {
    static const Mpg123Library only;
    return only;
}
} // namespace

void Mp3Decoder::Deleter::operator()(mpg123_handle_struct* handle) const {
    library().mpg123_delete(handle);
}

Mp3Decoder::Mp3Decoder(int rate, int channels) {
    if (!library().complete()) {
        problem_ = library().problem();
        return;
    }
    handle_.reset(library().mpg123_new(nullptr, nullptr));
    // It is given frame for frame, with what belongs to the sound alone: it has nothing to look for.
    constexpr long kFlags =
        MPG123_QUIET | MPG123_IGNORE_INFOFRAME | MPG123_NO_READAHEAD | MPG123_SKIP_ID3V2 | MPG123_FORCE_FLOAT;
    constexpr long kOthers = MPG123_GAPLESS | MPG123_AUTO_RESAMPLE;
    const bool isReady =
        handle_ && library().mpg123_param(handle_.get(), MPG123_ADD_FLAGS, kFlags, 0) == MPG123_OK &&
        library().mpg123_param(handle_.get(), MPG123_REMOVE_FLAGS, kOthers, 0) == MPG123_OK &&
        library().mpg123_param(handle_.get(), MPG123_RVA, MPG123_RVA_OFF, 0) == MPG123_OK &&
        library().mpg123_param(handle_.get(), MPG123_RESYNC_LIMIT, -1, 0) == MPG123_OK &&
        library().mpg123_format_none(handle_.get()) == MPG123_OK &&
        library().mpg123_format(handle_.get(), rate, channels == 1 ? MPG123_MONO : MPG123_STEREO,
                                MPG123_ENC_FLOAT_32) == MPG123_OK &&
        library().mpg123_open_feed(handle_.get()) == MPG123_OK;
    if (!isReady)
        problem_ = "the MP3 decoder does not start";
}

void Mp3Decoder::startAnew() {
    library().mpg123_open_feed(handle_.get());
}

void Mp3Decoder::decode(std::span<const std::uint8_t> frame, std::span<float> interleaved) {
    auto* const to = reinterpret_cast<unsigned char*>(interleaved.data());
    const std::size_t room = interleaved.size_bytes();
    std::size_t done = 0;
    for (int part = 0; part < 4 && done < room; ++part) { // it stops once to tell of a format
        std::size_t count = 0;
        const int result = library().mpg123_decode(handle_.get(), frame.data(), frame.size(), to + done,
                                                   room - done, &count);
        done += count;
        frame = {};
        if (result != MPG123_OK && result != MPG123_NEW_FORMAT)
            break;
    }
    std::fill(interleaved.begin() + static_cast<std::ptrdiff_t>(done / sizeof(float)), interleaved.end(),
              0.0F);
}

} // namespace velmora
