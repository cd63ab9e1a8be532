// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"
#include "sound/SetupState.h"

#include <gtest/gtest.h>

#include <random>

namespace velmora::test {

/// A number from 0 to @p bound - 1.
inline int below(std::minstd_rand& random, int bound) {
    return static_cast<int>(random() % static_cast<unsigned>(bound));
}

/// Notes of any length, instruments, chords and effects, up to a random end in each channel; values in range.
inline Score randomScore(std::minstd_rand& random, int numNotes) {
    Score score(numNotes);
    const auto any = [&random](int bound) { return static_cast<std::int16_t>(below(random, bound)); };
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        const int end = channel == 9 ? 0 : below(random, numNotes + 2);
        for (int position = 0; position < end;) {
            const std::int16_t row = any(128);
            const auto code = static_cast<std::int16_t>(channel < 8 ? any(128) : 128 + any(47));
            const int length = below(random, 5); // 0 for a rest
            for (int i = 0; i < length && position + i < end; ++i) {
                score.NoteCell.set(channel, position + i,
                                   static_cast<std::int16_t>(i == 0 ? row : row + 1000));
                score.NoteInstrument.set(channel, position + i, code);
            }
            position += std::max(length, 1);
        }
        for (ChannelGrid* grid : {&score.Volume, &score.Modulation_Change, &score.Pan_Change,
                                  &score.Reverb_Change, &score.Chorus_Change}) {
            for (int position = 1; position <= numNotes; position += 1 + any(4))
                grid->set(channel, position, any(128));
        }
        score.ChannelInstrument[channel] = any(175);
    }
    for (int row = 1; row <= kMelodyChannels; ++row)
        score.Polyphonics.set(row, below(random, numNotes + 1), any(8));
    score.Tempo = static_cast<std::int16_t>(1 + any(500));
    return score;
}

inline void expectSameScore(const Score& got, const Score& wanted) {
    EXPECT_EQ(got.NoteCell, wanted.NoteCell);
    EXPECT_EQ(got.NoteInstrument, wanted.NoteInstrument);
    EXPECT_EQ(got.Polyphonics, wanted.Polyphonics);
    EXPECT_EQ(got.Volume, wanted.Volume);
    EXPECT_EQ(got.Modulation_Change, wanted.Modulation_Change);
    EXPECT_EQ(got.Pan_Change, wanted.Pan_Change);
    EXPECT_EQ(got.Reverb_Change, wanted.Reverb_Change);
    EXPECT_EQ(got.Chorus_Change, wanted.Chorus_Change);
    EXPECT_EQ(got.ChannelInstrument, wanted.ChannelInstrument);
    EXPECT_EQ(got.ChannelInUse, wanted.ChannelInUse);
    EXPECT_EQ(got.ChannelShown, wanted.ChannelShown);
    EXPECT_EQ(got.BeatMemo, wanted.BeatMemo);
    EXPECT_EQ(got.Tempo, wanted.Tempo);
    EXPECT_EQ(got.NotesPerMeasure, wanted.NotesPerMeasure);
    EXPECT_EQ(got.SongEnd, wanted.SongEnd);
    EXPECT_EQ(got.TopChannel, wanted.TopChannel);
}

} // namespace velmora::test
