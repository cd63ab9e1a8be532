// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ViewGeometry.h"

#include "score/Numbers.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "tableau/TableauScene.h"

#include <algorithm>
#include <vector>

namespace velmora {

namespace {
constexpr int kSides = 70;       ///< what stands left and right of `MusicBox`
constexpr int kUnseenEnd = 10;   ///< the last positions are not scrolled to
constexpr int kRailEnd = 10;     ///< the end of a rail, which a drag does not reach
constexpr int kMostRows = 32767; ///< of a window that no screen holds
constexpr int kLeastZoom = 5;
constexpr int kMostZoom = 24;

int rowsSeen(const ViewState& view, int musicBoxHeight) {
    return std::clamp(musicBoxHeight / std::max(1, view.Line_Height), 1, kLastRow + 1);
}

struct Channels {
    int first, end;
};
constexpr Channels kMelody{0, kMelodyChannels};
constexpr Channels kPercussion{kFirstPercussion, kUsedChannels};

/// Where painted notes begin within these positions, the earliest first.
std::vector<int> headRows(const Score& score, Channels channels, int firstColumn, int lastColumn) {
    std::vector<int> rows;
    for (int position = firstColumn; position <= std::min(lastColumn, score.NumNotes); ++position)
        for (int channel = channels.first; channel < channels.end; ++channel) {
            const int cell = score.NoteCell.valueOr(channel, position, kEmptyCell);
            if (isPainted(score, channel) && cellClass(cell) == CellClass::Head)
                rows.push_back(std::min(cellRow(cell), kLastRow));
        }
    return rows;
}
} // namespace

void resizeView(ViewState& view, int windowWidth, int picmainHeight, int numNotes) {
    view.ViewColumns = std::max(0, (windowWidth - kSides) / kColumnWidth - 1);
    // More rows than fit: a bound for painting, not a count of what is seen. That is meant.
    const double pitch = std::max(1, view.Line_Height) / 12.0 * 16;
    view.ViewRows = static_cast<int>(std::min<double>(kMostRows, roundHalfEven(picmainHeight / pitch + 12)));
    view.ViewLastColumn = std::min(view.ViewFirstColumn + view.ViewColumns, numNotes - 1);
    view.ViewFirstColumn = std::max(0, view.ViewLastColumn - view.ViewColumns);
    view.ViewTopRow = std::max(0, view.ViewBottomRow() - view.ViewRows);
}

ScrollRange columnRange(const ViewState& view, int songEnd) {
    const int least = view.ViewHalfColumns();
    return {least, std::max(least, view.ViewColumns * 2 + songEnd), view.ViewColumns * 2 + least};
}

ScrollRange rowRange(const ViewState& view, int musicBoxHeight) {
    const int seen = rowsSeen(view, musicBoxHeight);
    const int least = view.ViewHalfRows() - 1;
    return {least, least + kLastRow + 1 - seen, seen};
}

int columnValue(const ViewState& view) {
    return view.ViewFirstColumn + view.ViewHalfColumns();
}

int rowValue(const ViewState& view) {
    return view.ViewTopRow + view.ViewHalfRows() - 1;
}

void scrollToColumn(ViewState& view, int value, int numNotes) {
    view.ViewFirstColumn = std::max(0, value - view.ViewHalfColumns());
    view.ViewLastColumn = std::min(view.ViewColumns + view.ViewFirstColumn, numNotes - kUnseenEnd);
}

void scrollToRow(ViewState& view, int value) {
    view.ViewTopRow = std::max(0, value - view.ViewHalfRows() + 1);
}

int topRowForNotes(const ViewState& view, const Score& score, int musicBoxHeight) {
    const int seen = rowsSeen(view, musicBoxHeight);
    const int top = view.ViewTopRow;
    std::vector<int> rows = headRows(score, kMelody, view.ViewFirstColumn, view.ViewLastColumn);
    if (rows.empty())
        rows = headRows(score, kMelody, 0, score.NumNotes);
    if (rows.empty() || std::ranges::any_of(rows, [&](int row) { return row >= top && row < top + seen; }))
        return top;
    const int around = seen / 4; // others will be near
    const int first = rows.front();
    const int lowest = kLastRow + 1 - seen;
    if (first < top)
        return std::clamp(first - around, 0, lowest);
    // Beats above the highest row would be out of sight: they may cost the rows around, but not the note.
    const std::vector<int> beats = headRows(score, kPercussion, view.ViewFirstColumn, view.ViewLastColumn);
    const int highestBeat = beats.empty() ? kLastRow : std::ranges::min(beats);
    const int least = first - seen + 1;
    return std::clamp(highestBeat, least, std::min(least + around, lowest));
}

bool showNotes(ViewState& view, const UndoHistory::Changed& notes, int numNotes, int musicBoxHeight) {
    const int seen = rowsSeen(view, musicBoxHeight);
    const bool columnSeen = notes.positions.first <= view.ViewFirstColumn + view.ViewColumns &&
                            notes.positions.end > view.ViewFirstColumn;
    const bool isMelody = notes.row >= 0 && notes.channel < kMelodyChannels;
    const bool rowSeen = !isMelody || (notes.row >= view.ViewTopRow && notes.row < view.ViewTopRow + seen);
    if (!columnSeen) // what stands before them is seen, too
        scrollToColumn(view, notes.positions.first + view.ViewColumns / 4, numNotes);
    if (!rowSeen)
        view.ViewTopRow = std::clamp(notes.row - seen / 2, 0, std::max(0, kLastRow + 1 - seen));
    return !columnSeen || !rowSeen;
}

int topRowKeeping(const ViewState& view, int row, int y, int musicBoxHeight) {
    const int above = y / std::max(1, view.Line_Height);
    return std::clamp(row - above, 0, kLastRow + 1 - rowsSeen(view, musicBoxHeight));
}

int zoomedLineHeight(int lineHeight, int notches) {
    const int wanted = lineHeight + std::clamp(notches, -kMostLineHeight, kMostLineHeight);
    return notches > 0 ? std::min(wanted, std::max(lineHeight, kMostZoom))
                       : std::max(wanted, std::min(lineHeight, kLeastZoom));
}

int railValue(const ViewState& view, int songEnd, int place, int length) {
    if (length <= kRailEnd)
        return view.ViewHalfColumns();
    const int at = std::clamp(place, 0, length - kRailEnd);
    const double columns = static_cast<double>(at) / length * (view.ViewColumns * 4 + songEnd);
    return view.ViewHalfColumns() + static_cast<int>(columns);
}

} // namespace velmora
