// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <cstdint>
#include <type_traits>

namespace velmora {

struct SetupState;

/// What belongs to a composition beside its cells and its name. What is only chosen (mutes, what the mouse
/// does) or only played (velocities, drum keys) is none of it.
struct ScoreScalars {
    ScoreScalars() = default;
    ScoreScalars(const Score& score, const SetupState& setup);
    /// Gives it to a score that is as long as `NumNotes` says.
    void putBack(Score& score, SetupState& setup) const;
    /// Whether a score's file would be another, `NumNotes` counting as if it were in it.
    [[nodiscard]] bool savesLike(const ScoreScalars& other) const;
    bool operator==(const ScoreScalars&) const = default;

    std::int32_t NumNotes = 0;
    std::int32_t SongEnd = 0;
    std::int32_t ActiveChannel = 0;
    std::int32_t TopChannel = 0;
    std::int32_t TopMelodyHint = 0;
    std::int32_t TopDrumHint = 0;
    std::int16_t Tempo = 0;
    std::int16_t NotesPerMeasure = 0;
    std::int16_t TxBeats = 0;
    std::int16_t TxtMeter = 0;
    std::int16_t NoteX = 0;
    PerChannel<std::int16_t> ChannelInstrument;
    decltype(Score::BeatMemo) BeatMemo{};
    PerChannel<bool, kUsedChannels> ChannelInUse;
    PerChannel<bool> ChannelShown;
    PerChannel<bool, kMelodyChannels> Ch;
    PerChannel<bool> Chkstrum;
    std::uint8_t unused = 0; ///< so that no byte is left to chance
};
// Steps of undo hold what differs byte by byte.
static_assert(std::is_trivially_copyable_v<ScoreScalars> &&
              std::has_unique_object_representations_v<ScoreScalars>);

} // namespace velmora
