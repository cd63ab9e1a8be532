// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/FrameSource.h"
#include "studio/StereoReader.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace velmora {

/// Sound files one after the other. One alone counts in frames of its own, a row in those of the mix. Only
/// the file that is read is open. A file that can't be opened any more when its turn comes is passed over.
class SoundRow : public FrameSource {
public:
    /// @return blank, or why a file can't be played, in a sentence that names it
    [[nodiscard]] std::string open(const std::vector<std::filesystem::path>& files);

    [[nodiscard]] int rate() const override;
    [[nodiscard]] std::int64_t length() const override;
    void seek(std::int64_t frame) override;
    std::size_t read(std::span<float> interleaved, const std::stop_token& cancel) override;
    [[nodiscard]] std::string problem() const override { return problem_; }

private:
    struct File {
        std::filesystem::path path;
        std::int64_t frames; ///< of the mix
        SoundInfo info;
    };

    bool reach(std::size_t file);
    void missed(const File& file);

    std::vector<File> files_;
    std::size_t at_ = 0; ///< the file that is read
    std::optional<StereoReader> reader_;
    std::int64_t left_ = 0; ///< frames of the mix that the file still has
    std::string problem_;
};

} // namespace velmora
