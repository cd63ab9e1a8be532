// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/GridRows.h"
#include "tableau/TableauScene.h"

#include <array>
#include <cstdint>
#include <vector>

namespace velmora {

/// What a channel shows in a column of `MusicBox`.
struct InkCell {
    std::int16_t row = -1; ///< of the line through the cell; -1 where there is none
    std::int16_t head = 0; ///< how long the note is whose head stands here; 0 for no head
    bool begins = false;   ///< the line begins here
    bool chord = false;    ///< the head has a ring

    bool operator==(const InkCell&) const = default;
};

/// A blended strip over the full height, in logical pixels; none if it has no width.
struct InkStrip {
    int left = 0, width = 0;

    bool operator==(const InkStrip&) const = default;
    /// What a column has of it, counted from the column's left edge.
    [[nodiscard]] InkStrip within(int column) const;
};

/// All that a picture of `MusicBox` shows, as values: two that are the same are the same picture, and where
/// two differ the pictures may.
struct MelodyInk {
    GridLook look;
    bool colourful = true;
    bool accidentals = true;
    bool headsWhole = false; ///< heads over all bars, and none cut at the left edge
    std::array<QRgb, kMelodyChannels> colours{};
    std::array<int, kMelodyChannels> order{}; ///< in which the channels are painted, the active one last
    int columns = 0;                          ///< of each channel in `cells`
    std::vector<InkCell> cells;               ///< those of channel 0, those of channel 1 and so on
    InkStrip selection, playMark;

    /// Reads the scene; memory is used again.
    void take(const TableauScene& scene, const GridLook& look);

    /// Nothing outside of the view.
    [[nodiscard]] InkCell at(int channel, int column) const {
        return column < 0 || column >= columns ? InkCell{} : cells[index(channel, column)];
    }
    /// Whether the same cells would look the same, wherever the view stands.
    [[nodiscard]] bool paintsAs(const MelodyInk& other) const;

private:
    [[nodiscard]] std::size_t index(int channel, int column) const {
        return static_cast<std::size_t>(channel) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(column);
    }
    void takeChannel(const TableauScene& scene, int channel);
    void takeStrips(const ViewState& view);
};

/// A line with or without a head, as it is painted.
struct InkNote {
    int channel;
    int column; ///< of the view
    int cells;  ///< columns of the line
    InkCell first;
};

/// Calls @p visit with each note of a channel, from left to right.
template<typename Visit>
void forEachNote(const MelodyInk& ink, int channel, Visit visit) {
    for (int column = 0; column < ink.columns;) {
        const InkCell first = ink.at(channel, column);
        const int begin = column++;
        if (first.row < 0)
            continue;
        while (column < ink.columns && ink.at(channel, column).row >= 0 && !ink.at(channel, column).begins)
            ++column;
        visit(InkNote{channel, begin, column - begin, first});
    }
}

} // namespace velmora
