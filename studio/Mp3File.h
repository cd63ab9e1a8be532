// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PendingFile.h"
#include "studio/EncoderTables.h"
#include "studio/Mp3Stream.h"
#include "studio/SampleSink.h"
#include "studio/clsFileIo.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace velmora {

struct Mp3Options {
    int bitrate = 224;       ///< kilobits per second, one of kMp3Bitrates
    int sampleRate = 44100;  ///< of the sound and of the file, one of kMp3Rates
    int mode = kJointStereo; ///< or kMono
    int preset = 9000;       ///< of kEncoderQualities: how hard the encoder searches
    std::string title = {};  ///< for the tag, UTF-8
    std::string artist = {};
    std::filesystem::path cover = {}; ///< a JPEG or PNG picture for the tag
    std::string front = {};           ///< a whole tag, in place of one of these three
    std::string behind = {};          ///< tags that follow the sound
};

/// Sound into an MP3 file of constant bitrate, which appears in its place when it is finished. Its first
/// frame tells players the exact length, so that they leave out the encoder's delay. The same sound gives the
/// same bytes, however it is cut into blocks.
class Mp3File : public SampleSink {
public:
    explicit Mp3File(std::filesystem::path path, Mp3Options options = {});
    ~Mp3File() override;

    [[nodiscard]] std::string open() override;
    /// Takes one value a frame if the mode is mono.
    [[nodiscard]] std::string write(std::span<const float> interleaved) override;
    [[nodiscard]] std::string finish() override;

private:
    [[nodiscard]] std::string told(int code);
    bool keep(std::span<const unsigned char> bytes);

    std::filesystem::path path_;
    PendingFile file_;
    clsFileIo writer_;
    Mp3Options options_;
    std::optional<Mp3Stream> stream_;
    std::size_t tagSize_ = 0;   ///< bytes in front of the first frame
    std::size_t unflushed_ = 0; ///< bytes that no one has sent to the disk yet
};

} // namespace velmora
