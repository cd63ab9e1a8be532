// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/CellRuns.h"
#include "score/ScoreScalars.h"
#include "score/SngContents.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Every change of the composition, as far as memory is meant for it: what has been done can be undone and
/// what was undone done again, one act at a time.
///
/// Nobody reports what an act has changed. The history keeps the composition as it was after the last act;
/// `commit` looks at the cells that may have been written since and keeps where they differ. So an act that
/// changed nothing is no step, and none is forgotten. What a step undoes comes back bit by bit.
class UndoHistory {
public:
    /// Steps take no more bytes than this; the oldest are dropped.
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    explicit UndoHistory(std::size_t mostBytes = kMostBytes) : mostBytes_(mostBytes) {}

    /// Begins anew with a composition as it stands, which counts as saved.
    void restart(Score& score, const SetupState& setup);

    /// An act begins: what else was chosen since the last one comes back with what it changes, and is no step
    /// of its own.
    void begin(const Score& score, const SetupState& setup);
    /// What it is called. The first name counts: what an act calls on has names, too.
    void name(std::string_view words);
    /// An act is over: what it has changed is a step, and what was undone before is gone. False if it has
    /// changed nothing that a file would hold.
    bool commit(Score& score, const SetupState& setup);

    /// What undoing or redoing has changed.
    struct Changed {
        bool melody = false; ///< notes, and what belongs to them, of melody channels
        bool percussion = false;
        bool length = false;
        bool name = false;
        bool meter = false;
        /// Where notes have changed: all positions, and the first of these notes, as it is or was. Of other
        /// changes at positions those; empty for none.
        CellRange positions{};
        int channel = -1;
        int row = -1;
    };
    /// Takes the newest step back; nothing if there is none. To be called between acts.
    std::optional<Changed> undo(Score& score, SetupState& setup);
    /// Does what was undone last.
    std::optional<Changed> redo(Score& score, SetupState& setup);

    /// What they would undo or redo; blank while there is nothing.
    [[nodiscard]] std::string_view undoName() const;
    [[nodiscard]] std::string_view redoName() const;

    /// The composition as it is now is on the disk; within an act, as it will be at its end.
    void markSaved();
    /// Whether it is another one since. Undoing back to what was saved is none.
    [[nodiscard]] bool isSaved() const { return saved_ == position(); }

    /// What the steps take, with what keeps them.
    [[nodiscard]] std::size_t bytes() const { return bytes_; }
    [[nodiscard]] std::size_t steps() const { return steps_.size(); }

private:
    struct Step {
        std::uint32_t name;
        std::uint32_t size;
        std::unique_ptr<std::uint8_t[]> bytes;
        [[nodiscard]] std::span<const std::uint8_t> span() const { return {bytes.get(), size}; }
    };
    using Bytes = std::vector<std::uint8_t>;

    [[nodiscard]] std::int64_t position() const { return dropped_ + static_cast<std::int64_t>(done_); }
    [[nodiscard]] bool takeCells(Bytes& to, Score& score);
    bool takeRow(Bytes& to, const Score& score, std::size_t layer, int row);
    void push(const Bytes& bytes);
    void dropUndone();
    void dropOldest();
    Changed apply(const Step& step, Side side, Score& score, SetupState& setup);
    void putRow(StepReader& from, Side side, Score& score, Changed& changed);
    [[nodiscard]] std::uint32_t numberOf(std::string_view words);
    [[nodiscard]] static std::size_t cost(const Step& step);
    void setLength(Score& score, int numNotes);

    std::size_t mostBytes_;
    std::deque<Step> steps_;
    std::size_t done_ = 0; ///< steps that are not undone
    std::size_t bytes_ = 0;
    std::vector<std::string> words_; ///< names of steps and of scores, each once

    // The composition after the step that was done last.
    std::vector<ChannelGrid> grids_;
    ScoreScalars scalars_;
    // And as it was when the act began.
    ScoreScalars begun_;
    std::uint32_t fileBegun_ = 0;
    std::optional<std::uint32_t> name_;

    std::int64_t dropped_ = 0; ///< steps that are kept no more
    std::int64_t saved_ = 0;   ///< position that is on the disk; -1 for one that can't be reached
    bool inAct_ = false;
    bool savedAtEnd_ = false;
};

} // namespace velmora
