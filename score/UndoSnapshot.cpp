// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/UndoSnapshot.h"

#include "score/KeptLayers.h"
#include "score/Score.h"
#include "score/SngText.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
constexpr int kBeyondSongEnd = 100; ///< positions after the song's end that a snapshot still looks at
} // namespace

UndoSnapshot::UndoSnapshot(std::filesystem::path path) : file_(std::move(path)) {}

void UndoSnapshot::SaveforUndo(const Score& score, const SetupState& setup, std::string_view step) {
    if (holds_ > 0)
        return;
    forget();
    ++snapshots;
    if (!score.ChannelInUse.contains(score.ActiveChannel))
        return;
    std::string text = serializeUndo(score, setup);
    if (!file_.write(text))
        unwritten_ = std::move(text);
    UndoChannel = score.ActiveChannel;
    step_ = step;
}

void UndoSnapshot::keepWhole(const Score& score, const SetupState& setup, std::string_view step,
                             StepScope scope) {
    if (holds_ > 0)
        return;
    forget();
    ++snapshots;
    auto layers = std::make_shared<const KeptLayers>(score, setup);
    file_.write(layers);
    whole_.emplace(Whole{ScoreRemainder(score, setup), std::move(layers), scope});
    step_ = step;
}

bool UndoSnapshot::OpenforUndo(Score& score, SetupState& setup) {
    if (step().empty())
        return false;
    if (whole_) {
        if (!file_.failed() && !file_.isThere())
            return false;
        if (whole_->scope == StepScope::Score)
            whole_->remainder.putBackWhole(*whole_->layers, score, setup);
        else
            whole_->remainder.putBack(*whole_->layers, score, setup);
    } else {
        const auto text = file_.failed() ? std::optional(unwritten_) : file_.text();
        if (!text)
            return false;
        parseUndo(*text, UndoChannel, score, setup);
    }
    forget();
    return true;
}

bool UndoSnapshot::bringsScoreBack() const {
    return whole_ && whole_->scope == StepScope::Score;
}

void UndoSnapshot::forget() {
    UndoChannel = -1;
    whole_.reset();
    unwritten_.clear();
    step_ = {};
}

std::string serializeUndo(const Score& score, const SetupState& setup) {
    const int channel = score.ActiveChannel;
    if (!score.ChannelInUse.contains(channel))
        return {};
    const int bound = score.SongEnd >= 1 ? score.SongEnd + kBeyondSongEnd : score.NumNotes;
    const auto fields = static_cast<std::size_t>(std::max(score.lastFilledPosition(channel, bound), 0)) + 1;
    const std::size_t effectEnd = std::min(fields + 1, static_cast<std::size_t>(score.Volume.positions()));

    SngWriter out(8 * fields);
    out.row(score.NoteCell.row(channel).first(fields));
    out.row(score.NoteInstrument.row(channel).first(fields));
    out.row(std::span(&score.ChannelInstrument[channel], 1));
    out.line(kPolyphonicsKeyword);
    if (channel < kPolyphonicsRows)
        out.row(score.Polyphonics.row(channel).first(effectEnd));
    for (const EffectSection& section : kEffectSections) {
        out.line(section.keyword);
        out.row((score.*section.grid).row(channel).first(effectEnd).subspan(1));
    }
    writeKeyLines(out, score, setup);
    return out.take();
}

void parseUndo(std::string_view bytes, int channel, Score& score, SetupState& setup) {
    if (!score.ChannelInUse.contains(channel))
        return;
    SngLines lines(bytes);
    score.ClearThisArray(channel);
    markInUse(score, channel, lines.row(score.NoteCell.row(channel)));
    rememberBeats(score, channel, lines.row(score.NoteInstrument.row(channel)));
    // Field `channel` of a row that has one field: only channel 0 gets its instrument back.
    auto instruments = score.ChannelInstrument;
    lines.row(std::span(instruments).first(kUsedChannels));
    score.ChannelInstrument[channel] = instruments[channel];

    lines.line(); // each keyword is passed over, whatever it says
    if (channel < kPolyphonicsRows)
        lines.row(score.Polyphonics.row(channel));
    for (const EffectSection& section : kEffectSections) {
        lines.line();
        lines.row((score.*section.grid).row(channel).subspan(1));
    }
    MeterFields ignored; // here a blank line ends the search, not the values found
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        if (line.empty())
            break;
        applyKeyLine(line, score, setup, ignored);
    }
    score.FindEndOfSong();
}

} // namespace velmora
