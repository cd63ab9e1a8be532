// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"
#include "studio/SongTags.h"

#include <cstdint>
#include <optional>
#include <span>

namespace velmora {

/// What the four bytes tell that each frame of an MP3 stream begins with.
struct Mp3FrameHeader {
    int rate = 0;      ///< frames of sound a second
    int bitrate = 0;   ///< kbit/s
    int channels = 0;  ///< 1 or 2
    int bytes = 0;     ///< of the whole frame
    int samples = 0;   ///< of each channel: 1152, below 32,000 Hz 576
    int sideBytes = 0; ///< between the header and the sound

    /// Of frames of this bitrate: they differ by a byte.
    [[nodiscard]] double meanBytes() const { return samples / 8.0 * bitrate * 1000 / rate; }
    /// Whether one stream can have both.
    [[nodiscard]] bool goesWith(const Mp3FrameHeader& other) const { return rate == other.rate; }
};
/// Nothing if no frame of Layer III begins with these bytes, or if it doesn't tell its length.
[[nodiscard]] std::optional<Mp3FrameHeader> mp3FrameHeader(std::span<const std::uint8_t> bytes);

struct Mp3Frame {
    std::uint64_t at = 0; ///< the byte at which it begins
    Mp3FrameHeader header;
    bool isLost = false; ///< it stood where the file is damaged; the header is that of the next one
};

/// What the first frame tells of the others, if it is there for that and holds no sound.
struct Mp3InfoFrame {
    std::int64_t frames = 0;  ///< of sound; 0 if it doesn't tell
    std::optional<int> delay; ///< frames of silence that the encoder put in front
    int padding = 0;          ///< and behind
};
[[nodiscard]] std::optional<Mp3InfoFrame> mp3InfoFrame(std::span<const std::uint8_t> frame,
                                                       const Mp3FrameHeader& header);

/// The frames of an MP3 file, one behind the other: behind tags of any size and junk, over damaged places, up
/// to the last that is whole. A stream begins, and goes on after damage, where two frames follow each other;
/// of damage that isn't long it tells as many lost frames as must have stood there, so that time stays right.
class Mp3Frames {
public:
    explicit Mp3Frames(ByteSource& bytes);

    /// Whether there is one: whether two frames follow each other anywhere.
    [[nodiscard]] bool found() const { return first_.has_value(); }
    [[nodiscard]] const std::optional<Mp3Frame>& first() const { return first_; }
    [[nodiscard]] const SongTags& tags() const { return tags_; }
    /// Nothing at the end.
    std::optional<Mp3Frame> next();
    /// `next` gives the frame that begins there.
    void moveTo(std::uint64_t at) {
        at_ = at;
        lost_.reset();
    }
    /// The bytes of a frame; fewer if they can't be read any more.
    [[nodiscard]] std::span<const std::uint8_t> bytesOf(const Mp3Frame& frame);

private:
    void readTagsBehind();
    [[nodiscard]] std::uint64_t behindTags();
    std::optional<Mp3Frame> search(std::uint64_t from);
    [[nodiscard]] std::uint64_t tagAt(std::uint64_t at);
    void goOnBehindDamage();
    [[nodiscard]] bool couldFollow(const Mp3FrameHeader& header) const {
        return !first_ || header.goesWith(first_->header);
    }

    ByteWindow bytes_;
    SongTags tags_;
    std::uint64_t at_ = 0;
    std::uint64_t end_; ///< of the sound
    std::optional<Mp3Frame> first_;
    struct Lost {
        std::uint64_t from;
        Mp3Frame next; ///< where the stream goes on
        int count;
        int told = 0;
    };
    std::optional<Lost> lost_;
};

} // namespace velmora
