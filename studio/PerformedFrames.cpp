// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/PerformedFrames.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

PerformedFrames::PerformedFrames(std::vector<TimedMessage> messages, std::unique_ptr<SynthEngine> engine,
                                 SynthOptions options)
    : messages_(std::move(messages))
    , engine_(std::move(engine))
    , options_(std::move(options))
    , length_(messages_.empty() ? 0 : std::llround(messages_.back().seconds * options_.sampleRate)) {
    sound_.emplace(*engine_, messages_, options_.sampleRate);
}

void PerformedFrames::seek(std::int64_t frame) {
    sound_.reset();
    rest_ = {};
    problem_.clear();
    engine_.reset(); // two at a time would hold the samples twice
    SynthEngine::Created created = SynthEngine::create(options_);
    engine_ = std::move(created.engine);
    problem_ = std::move(created.error);
    if (engine_)
        sound_.emplace(*engine_, messages_, options_.sampleRate, frame);
}

std::size_t PerformedFrames::read(std::span<float> interleaved, const std::stop_token& cancel) {
    std::size_t done = 0;
    while (sound_ && done < interleaved.size()) {
        if (rest_.empty()) {
            rest_ = sound_->next(cancel);
            if (cancel.stop_requested())
                break;
            if (rest_.empty())
                break;
        }
        const auto piece = rest_.first(std::min(rest_.size(), interleaved.size() - done));
        std::ranges::copy(piece, interleaved.begin() + static_cast<std::ptrdiff_t>(done));
        rest_ = rest_.subspan(piece.size());
        done += piece.size();
    }
    return done / 2;
}

} // namespace velmora
