// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/UndoHistory.h"

#include "score/StepBytes.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace velmora {

namespace {
using ScalarBytes = std::array<std::uint8_t, sizeof(ScoreScalars)>;

constexpr std::string_view kUnnamed = "Last change";
constexpr std::size_t kNoteLayer = 0;   ///< of `kSngLayers`
constexpr std::size_t kChordLayer = 2;  ///< whose rows are those of the channel before
constexpr std::size_t kAllocation = 16; ///< what the memory of a step costs beside its bytes

/// What makes one of the other, in either direction: runs of bytes that differ, by exclusive or.
void writeScalars(StepWriter& to, const ScoreScalars& one, const ScoreScalars& other) {
    const auto first = std::bit_cast<ScalarBytes>(one);
    const auto second = std::bit_cast<ScalarBytes>(other);
    std::size_t last = 0;
    for (std::size_t at = 0; at < first.size(); ++at) {
        if (first[at] == second[at])
            continue;
        to.number(at - last + 1);
        to.byte(first[at] ^ second[at]);
        last = at;
    }
    to.number(0);
}

ScoreScalars readScalars(StepReader& from, const ScoreScalars& one) {
    auto bytes = std::bit_cast<ScalarBytes>(one);
    std::size_t at = 0;
    while (const std::size_t distance = from.number()) {
        at += distance - 1;
        bytes[at] ^= from.byte();
    }
    return std::bit_cast<ScoreScalars>(bytes);
}

int channelOf(std::size_t layer, int row) {
    return layer == kChordLayer ? row - 1 : row;
}

void join(CellRange& all, CellRange more) {
    if (all.first >= all.end)
        all = more;
    all = {std::min(all.first, more.first), std::max(all.end, more.end)};
}
} // namespace

void UndoHistory::restart(Score& score, const SetupState& setup) {
    steps_.clear();
    done_ = 0;
    bytes_ = 0;
    dropped_ = saved_ = 0;
    words_.clear();
    name_.reset();
    grids_.clear();
    for (const SngLayer& layer : kSngLayers) {
        (score.*layer.grid).forgetTouched();
        grids_.push_back(score.*layer.grid);
    }
    scalars_ = ScoreScalars(score, setup);
    inAct_ = savedAtEnd_ = false;
    begin(score, setup);
    inAct_ = false;
}

void UndoHistory::begin(const Score& score, const SetupState& setup) {
    begun_ = ScoreScalars(score, setup);
    fileBegun_ = numberOf(score.currentFile);
    inAct_ = true;
}

void UndoHistory::name(std::string_view words) {
    if (!name_)
        name_ = numberOf(words);
}

bool UndoHistory::commit(Score& score, const SetupState& setup) {
    const ScoreScalars now(score, setup);
    const std::uint32_t file = numberOf(score.currentFile);
    Bytes bytes;
    StepWriter to(bytes);
    writeScalars(to, scalars_, begun_);
    writeScalars(to, begun_, now);
    to.number(file == fileBegun_ ? 0 : 1);
    if (file != fileBegun_) {
        to.number(fileBegun_);
        to.number(file);
    }
    const bool changed = takeCells(bytes, score) || !now.savesLike(begun_);
    if (changed) {
        push(bytes);
        scalars_ = now;
    }
    if (std::exchange(savedAtEnd_, false))
        saved_ = position();
    begun_ = now;
    fileBegun_ = file;
    name_.reset();
    inAct_ = false;
    return changed;
}

/// The history's own cells become those of the score.
bool UndoHistory::takeCells(Bytes& to, Score& score) {
    bool changed = false;
    for (std::size_t layer = 0; layer < kSngLayers.size(); ++layer) {
        ChannelGrid& grid = score.*kSngLayers[layer].grid;
        for (int row = 0; row < ChannelGrid::kChannels; ++row)
            changed = takeRow(to, score, layer, row) || changed;
        if (grids_[layer].positions() != grid.positions())
            grids_[layer] = grid;
        grid.forgetTouched();
        grids_[layer].forgetTouched();
    }
    return changed;
}

bool UndoHistory::takeRow(Bytes& to, const Score& score, std::size_t layer, int row) {
    const ChannelGrid& grid = score.*kSngLayers[layer].grid;
    const ChannelGrid::Range touched = grid.touched(row);
    if (touched.empty())
        return false;
    const auto begin = static_cast<std::size_t>(touched.first);
    const std::size_t before = to.size();
    StepWriter writer(to);
    writer.number(layer * ChannelGrid::kChannels + static_cast<std::size_t>(row) + 1);
    const auto old = grids_[layer].row(row);
    const auto cells = grid.row(row);
    std::size_t runs = 0;
    if (old.size() == cells.size()) {
        const auto count = static_cast<std::size_t>(touched.end - touched.first);
        runs = writeRuns(writer, old.subspan(begin, count), cells.subspan(begin, count), touched.first);
        if (runs > 0)
            std::ranges::copy(cells.subspan(begin, count), old.begin() + touched.first);
    } else { // beyond a row's end nothing stands
        const std::size_t most = std::max(old.size(), cells.size());
        std::vector<std::int16_t> oldCells(old.begin(), old.end());
        std::vector<std::int16_t> newCells(cells.begin(), cells.end());
        oldCells.resize(most, grid.fill());
        newCells.resize(most, grid.fill());
        runs = writeRuns(writer, oldCells, newCells, 0);
    }
    if (runs == 0)
        to.resize(before);
    return runs > 0;
}

void UndoHistory::push(const Bytes& bytes) {
    dropUndone();
    Step step{name_.value_or(numberOf(kUnnamed)), static_cast<std::uint32_t>(bytes.size()),
              std::make_unique_for_overwrite<std::uint8_t[]>(bytes.size())};
    std::ranges::copy(bytes, step.bytes.get());
    bytes_ += cost(step);
    steps_.push_back(std::move(step));
    ++done_;
    while (bytes_ > mostBytes_ && steps_.size() > 1)
        dropOldest();
}

/// Another way was taken.
void UndoHistory::dropUndone() {
    if (saved_ > position())
        saved_ = -1;
    while (steps_.size() > done_) {
        bytes_ -= cost(steps_.back());
        steps_.pop_back();
    }
}

void UndoHistory::dropOldest() {
    bytes_ -= cost(steps_.front());
    steps_.pop_front();
    --done_;
    ++dropped_;
}

std::size_t UndoHistory::cost(const Step& step) {
    return sizeof(Step) + step.size + kAllocation;
}

std::optional<UndoHistory::Changed> UndoHistory::undo(Score& score, SetupState& setup) {
    if (done_ == 0)
        return std::nullopt;
    --done_;
    return apply(steps_[done_], Side::Before, score, setup);
}

std::optional<UndoHistory::Changed> UndoHistory::redo(Score& score, SetupState& setup) {
    if (done_ == steps_.size())
        return std::nullopt;
    ++done_;
    return apply(steps_[done_ - 1], Side::After, score, setup);
}

UndoHistory::Changed UndoHistory::apply(const Step& step, Side side, Score& score, SetupState& setup) {
    Changed changed;
    StepReader from(step.span());
    StepReader chosen = from; // what was chosen before the act stands before what the act has changed
    const ScoreScalars now(score, setup);
    ScoreScalars target = scalars_;
    if (side == Side::Before) {
        static_cast<void>(readScalars(from, {}));
        target = readScalars(from, scalars_);
        scalars_ = readScalars(chosen, target);
    } else {
        target = scalars_ = readScalars(from, readScalars(from, scalars_));
    }
    if (from.number() != 0) {
        const std::size_t before = from.number();
        const std::size_t after = from.number();
        score.currentFile = words_[side == Side::Before ? before : after];
        changed.name = true;
    }
    setLength(score, std::max(score.NumNotes, target.NumNotes));
    while (!from.atEnd())
        putRow(from, side, score, changed);
    setLength(score, target.NumNotes);
    target.putBack(score, setup);
    for (std::size_t layer = 0; layer < kSngLayers.size(); ++layer) {
        (score.*kSngLayers[layer].grid).forgetTouched();
        grids_[layer].forgetTouched();
    }
    changed.length = now.NumNotes != target.NumNotes;
    changed.meter = now.Tempo != target.Tempo || now.NotesPerMeasure != target.NotesPerMeasure ||
                    now.TxtMeter != target.TxtMeter || now.NoteX != target.NoteX;
    begun_ = target;
    fileBegun_ = numberOf(score.currentFile);
    return changed;
}

void UndoHistory::setLength(Score& score, int numNotes) {
    if (score.NumNotes == numNotes && grids_.front().positions() == numNotes + 1)
        return;
    score.resizeNotes(numNotes);
    for (ChannelGrid& grid : grids_)
        grid.resize(numNotes + 1);
}

void UndoHistory::putRow(StepReader& from, Side side, Score& score, Changed& changed) {
    const std::size_t head = from.number() - 1;
    const std::size_t layer = head / ChannelGrid::kChannels;
    const int row = static_cast<int>(head % ChannelGrid::kChannels);
    const auto cells = (score.*kSngLayers[layer].grid).row(row);
    const CellRange range = readRuns(from, cells, side);
    const auto old = grids_[layer].row(row);
    const int channel = channelOf(layer, row);
    (channel < kMelodyChannels ? changed.melody : changed.percussion) = true;
    if (layer == kNoteLayer || changed.row < 0)
        join(changed.positions, range);
    if (layer == kNoteLayer && changed.row < 0) {
        changed.positions = range; // not where other layers have changed
        changed.channel = channel;
        for (int at = range.first; at < range.end && changed.row < 0; ++at) {
            const auto i = static_cast<std::size_t>(at);
            const std::int16_t cell = old[i] != cells[i] && old[i] >= 0 ? old[i] : cells[i];
            if (old[i] != cells[i] && cell >= 0)
                changed.row = cellRow(cell);
        }
    }
    const auto first = static_cast<std::size_t>(range.first);
    const auto count = static_cast<std::size_t>(range.end - range.first);
    std::ranges::copy(cells.subspan(first, count), old.begin() + range.first);
}

std::string_view UndoHistory::undoName() const {
    return done_ == 0 ? std::string_view() : words_[steps_[done_ - 1].name];
}

std::string_view UndoHistory::redoName() const {
    return done_ == steps_.size() ? std::string_view() : words_[steps_[done_].name];
}

void UndoHistory::markSaved() {
    if (inAct_)
        savedAtEnd_ = true;
    else
        saved_ = position();
}

std::uint32_t UndoHistory::numberOf(std::string_view words) {
    const auto at = std::ranges::find(words_, words) - words_.begin();
    if (static_cast<std::size_t>(at) == words_.size())
        words_.emplace_back(words);
    return static_cast<std::uint32_t>(at);
}

} // namespace velmora
