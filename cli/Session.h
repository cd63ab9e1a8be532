// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "cli/ScoreOptions.h"
#include "composition/Performance.h"
#include "score/Manners.h"
#include "score/PlayState.h"
#include "score/PlayedScore.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/SetupState.h"

#include <filesystem>
#include <optional>

namespace velmora {
class Player;
} // namespace velmora

namespace velmora::cli {

/// A score opened as the Open command opens it, long enough for every row of the file, with what performing
/// needs.
class Session {
public:
    /// Throws Failure if the file can't be read.
    Session(const std::filesystem::path& file, const ScoreOptions& options);

    /// For a `Player`.
    [[nodiscard]] PlayedScore played() { return {score, setup, view, state, chords, manners}; }
    /// Throws Failure if the options name a segment that "Play Segment" would not play.
    void refuseEmptySegment() const;
    /// Plays the score, or the segment that the options name, to its end. The player is one of this session.
    void perform(Player& player);
    /// The same as a list, made at once: the session stays as it is.
    [[nodiscard]] Performance performance() const;

    /// Seconds from the beginning of the first position that is played to the end of the last.
    [[nodiscard]] double seconds() const;

    Manners manners;
    Score score;
    SetupState setup;
    ChordSteps chords;
    ViewState view;
    PlayState state;

private:
    std::optional<PerformedSegment> segment_;
};

/// Says on standard error why nothing will be heard, if that is so.
void warnOfSilence(const std::filesystem::path& file, const Session& session);

} // namespace velmora::cli
