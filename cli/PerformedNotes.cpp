// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/PerformedNotes.h"

#include <algorithm>
#include <limits>

namespace velmora::cli {

namespace {
constexpr double kStepSeconds = 0.02;
}

PerformedNotes::PerformedNotes(std::unique_ptr<MusicPlayer> player, MessageLoop& loop)
    : player_(std::move(player))
    , loop_(loop) {}

SessionPlayer::End PerformedNotes::playNotes(bool /*showPosition*/,
                                             const std::function<void(double)>& progress) {
    if (!player_ || !player_->play(0, std::numeric_limits<std::int64_t>::max()))
        return End::Over;
    while (player_->isSounding()) {
        loop_.serveUntil(loop_.now() + kStepSeconds);
        const auto length = static_cast<double>(std::max<std::int64_t>(player_->length(), 1));
        progress(std::min(1.0, static_cast<double>(player_->position()) / length));
    }
    return End::Over;
}

void PerformedNotes::stopNotes() {
    if (player_)
        player_->stop();
}

} // namespace velmora::cli
