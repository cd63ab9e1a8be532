// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Mp3Frames.h"
#include "studio/SoundReader.h"

#include <memory>
#include <vector>

namespace velmora {

class Mp3Decoder;

/// The sound of an MP3 file, without the silence that its encoder tells it has put in front and behind. Every
/// frame counts, also one that can't be decoded: it is silent then.
class Mp3Reader : public SoundReader {
public:
    explicit Mp3Reader(std::unique_ptr<ByteSource> bytes);
    ~Mp3Reader() override;

    /// Blank, or why there is nothing to read, as the end of a sentence.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    std::size_t read(std::span<float> interleaved) override;
    void seek(std::int64_t frame) override;

private:
    /// Counts and places of the stream's own frames of sound; those before and behind what is heard as well.
    void survey();
    void cutTo(const Mp3InfoFrame& info);
    void note(std::int64_t index, std::uint64_t at);
    [[nodiscard]] std::int64_t decodedAt(std::int64_t frame) const;
    bool decodeNext();

    std::unique_ptr<ByteSource> bytes_;
    Mp3Frames frames_;
    std::string problem_;
    std::unique_ptr<Mp3Decoder> decoder_;

    Mp3FrameHeader first_;
    std::int64_t count_ = 0; ///< of the stream's frames
    std::int64_t lead_ = 1;  ///< frames that have to be decoded before one, so that it sounds as it should
    std::vector<std::uint64_t> places_; ///< of each stride_-th frame
    std::int64_t stride_ = 1;
    std::int64_t begin_ = 0; ///< what is heard, of all that is decoded: from here on
    std::int64_t gapAt_ = 0; ///< frames behind that, where a padding stands in the middle
    std::int64_t gap_ = 0;

    std::int64_t next_ = 0;         ///< frame of what is heard
    std::int64_t nextDecoded_ = 0;  ///< the stream's frame that decodeNext gives
    std::vector<float> decoded_;    ///< the last one
    std::int64_t decodedFrom_ = -1; ///< of all that is decoded, where that begins
};

} // namespace velmora
