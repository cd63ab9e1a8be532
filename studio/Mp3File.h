// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PendingFile.h"
#include "studio/EncoderTables.h"
#include "studio/SampleSink.h"

#include <memory>
#include <vector>

struct lame_global_struct;

namespace velmora {

struct Mp3Options {
    int bitrate = 224; ///< kilobits per second, one of kMp3Bitrates
    int sampleRate = 44100;
    /// 0 (slow) to 9 (quick): how hard the encoder searches. 3 is what the lame command takes.
    int effort = 3;
};

/// Sound into a joint-stereo MP3 file of constant bitrate, which appears in its place when it is finished.
/// Its first frame tells players the exact length, so that they leave out the encoder's delay.
class Mp3File : public SampleSink {
public:
    explicit Mp3File(std::filesystem::path path, Mp3Options options = {});
    ~Mp3File() override;

    [[nodiscard]] std::string open() override;
    [[nodiscard]] std::string write(std::span<const float> interleaved) override;
    [[nodiscard]] std::string finish() override;

private:
    struct Deleter {
        void operator()(lame_global_struct* encoder) const;
    };
    [[nodiscard]] std::string append(int encoded);

    PendingFile file_;
    Mp3Options options_;
    std::unique_ptr<lame_global_struct, Deleter> encoder_;
    std::vector<unsigned char> encoded_;
};

} // namespace velmora
