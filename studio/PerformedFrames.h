// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/SynthEngine.h"
#include "sound/TimedMessage.h"
#include "studio/FrameSource.h"
#include "studio/PerformanceSound.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// A performance as a player has it, on a synthesizer of its own, which is a new one after each seeking: so
/// the same frames come in each playing.
class PerformedFrames : public FrameSource {
public:
    /// @param engine a new one, made by @p options
    PerformedFrames(std::vector<TimedMessage> messages, std::unique_ptr<SynthEngine> engine,
                    SynthOptions options);

    [[nodiscard]] int rate() const override { return options_.sampleRate; }
    [[nodiscard]] std::int64_t length() const override { return length_; }
    void seek(std::int64_t frame) override;
    std::size_t read(std::span<float> interleaved, const std::stop_token& cancel) override;
    [[nodiscard]] std::string problem() const override { return problem_; }

private:
    std::vector<TimedMessage> messages_;
    std::unique_ptr<SynthEngine> engine_;
    SynthOptions options_;
    std::int64_t length_;
    std::optional<PerformanceSound> sound_;
    std::span<const float> rest_; ///< of the last stretch
    std::string problem_;
};

} // namespace velmora
