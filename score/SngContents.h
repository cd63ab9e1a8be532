// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"
#include "score/SngText.h"

#include <array>
#include <cstdint>
#include <span>
#include <stop_token>
#include <string>

namespace velmora {

struct SetupState;

/// A layer of the Score as the newest form of its file has it.
struct SngLayer {
    ChannelGrid Score::*grid;
    int rows;     ///< that the Score uses
    int fileRows; ///< of these that the file has
    int first;    ///< index of a file's first field
    std::int16_t cleared;
};

inline constexpr int kLayerRows = kUsedChannels + 1; ///< chord rows are one further down

/// In the order of the file, where the first two take turns.
inline constexpr std::array kSngLayers{
    SngLayer{&Score::NoteCell, kUsedChannels, kUsedChannels, 0, kEmptyCell},
    SngLayer{&Score::NoteInstrument, kUsedChannels, kUsedChannels, 0, 0},
    SngLayer{&Score::Polyphonics, kLayerRows, kPolyphonicsRows, 0, 0},
    SngLayer{&Score::Volume, kUsedChannels, kUsedChannels, 1, kClearedVolume},
    SngLayer{&Score::Modulation_Change, kUsedChannels, kUsedChannels, 1, kClearedEffect},
    SngLayer{&Score::Pan_Change, kUsedChannels, kUsedChannels, 1, kClearedPan},
    SngLayer{&Score::Reverb_Change, kUsedChannels, kUsedChannels, 1, kClearedEffect},
    SngLayer{&Score::Chorus_Change, kUsedChannels, kUsedChannels, 1, kClearedEffect},
};
static_assert(kSngLayers.size() == 3 + kEffectSections.size());

/// All that the newest form says, as views of cells that lie elsewhere.
struct SngContents {
    using Row = std::span<const std::int16_t>;

    std::array<std::array<Row, kLayerRows>, kSngLayers.size()>
        rows; ///< by layer; no fields where it has none
    decltype(Score::ChannelInstrument) instruments{};
    std::int16_t tempo = 0;
    MeterFields meter;
};

[[nodiscard]] SngContents sngContents(const Score& score, const SetupState& setup);
/// The text; what comes back after a stop is of no use.
[[nodiscard]] std::string serialize(const SngContents& contents, const std::stop_token& stop = {});

} // namespace velmora
