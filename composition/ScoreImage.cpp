// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreImage.h"

#include "score/SngFile.h"
#include "score/SngText.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <span>

namespace velmora {

namespace {
/// Calls @p visit with every row that the score's file has, in some fixed order. @p AScore may be const.
template<class AScore, class Visit>
void eachRow(AScore& score, Visit visit) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        visit(score.NoteCell.row(channel));
        visit(score.NoteInstrument.row(channel));
    }
    for (int row = 0; row < kPolyphonicsRows; ++row)
        visit(score.Polyphonics.row(row));
    for (const EffectSection& section : kEffectSections)
        for (int channel = 0; channel < kUsedChannels; ++channel)
            visit((score.*section.grid).row(channel));
}
constexpr std::size_t kRows = kUsedChannels * (2 + kEffectSections.size()) + kPolyphonicsRows;

/// The same for the single numbers of the file.
template<class AScore, class Setup, class Visit>
void eachNumber(AScore& score, Setup& setup, Visit visit) {
    for (std::size_t channel = 0; channel < kUsedChannels; ++channel)
        visit(score.ChannelInstrument[channel]);
    visit(score.Tempo);
    visit(setup.TxBeats);
    visit(setup.TxtMeter);
    visit(setup.NoteX);
}
constexpr std::size_t kNumbers = kUsedChannels + 4;

/// Up to the last note of all, and one more: there stands the effect of that note. 0 without notes.
std::size_t positionsToKeep(const Score& score) {
    int last = -1;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        last = std::max(last, score.lastFilledPosition(channel, score.NumNotes));
    return last < 0 ? 0 : static_cast<std::size_t>(std::min(last + 2, score.NoteCell.positions()));
}
} // namespace

bool ScoreImage::take(const Score& score, const SetupState& setup) {
    const std::size_t wanted = positionsToKeep(score);
    bool changed = wanted != positions || currentFile != score.currentFile;
    positions = wanted;
    currentFile = score.currentFile;
    cells.resize(kRows * positions + kNumbers);
    std::int16_t* to = cells.data();
    eachRow(score, [&](std::span<const std::int16_t> row) {
        const auto kept = row.first(positions);
        changed = changed || !std::equal(kept.begin(), kept.end(), to);
        to = changed ? std::copy(kept.begin(), kept.end(), to) : to + positions;
    });
    eachNumber(score, setup, [&](std::int16_t number) {
        changed = changed || *to != number;
        *to++ = number;
    });
    return changed;
}

std::string ScoreImage::text() const {
    Score score(static_cast<int>(positions) - 1);
    SetupState setup;
    const std::int16_t* from = cells.data();
    eachRow(score, [&](std::span<std::int16_t> row) {
        std::copy_n(from, positions, row.begin());
        from += positions;
    });
    eachNumber(score, setup, [&](std::int16_t& number) { number = *from++; });
    return serializePoliFile(score, setup);
}

} // namespace velmora
