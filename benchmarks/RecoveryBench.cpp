// SPDX-License-Identifier: GPL-2.0-or-later
// What the recovery file costs the thread that composes: a look at a full score that is as it was, and one at
// a score in which everything is different. The floor is the copy alone.
#include "composition/ScoreImage.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

using namespace velmora;

namespace {
Score filledScore(int numNotes, std::int16_t value) {
    Score score(numNotes);
    for (int channel = 0; channel < kUsedChannels; ++channel)
        for (ChannelGrid* grid :
             {&score.NoteCell, &score.NoteInstrument, &score.Polyphonics, &score.Volume,
              &score.Modulation_Change, &score.Pan_Change, &score.Reverb_Change, &score.Chorus_Change})
            grid->fillRow(channel, value);
    return score;
}

void lookAtUnchangedScore(benchmark::State& state) {
    const Score score = filledScore(static_cast<int>(state.range(0)), 60);
    ScoreImage image;
    image.take(score, SetupState{});
    for (auto _ : state) {
        if (image.take(score, SetupState{}))
            state.SkipWithError("nothing had changed");
    }
}
void lookAtOtherScore(benchmark::State& state) {
    const int numNotes = static_cast<int>(state.range(0));
    const std::vector<Score> scores{filledScore(numNotes, 60), filledScore(numNotes, 61)};
    ScoreImage image;
    std::size_t next = 0;
    for (auto _ : state) {
        if (!image.take(scores[next++ % 2], SetupState{}))
            state.SkipWithError("everything had changed");
    }
}
void lookFloor(benchmark::State& state) {
    const std::vector<std::int16_t> from(static_cast<std::size_t>(state.range(0) * (13 * 7 + 9)), 60);
    std::vector<std::int16_t> to(from.size());
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size() * sizeof from[0]);
        benchmark::DoNotOptimize(to.data());
    }
}
void positions(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("positions")->Arg(1000)->Arg(32767)->Arg(200000)->Unit(benchmark::kMillisecond);
}
BENCHMARK(lookAtUnchangedScore)->Apply(positions);
BENCHMARK(lookAtOtherScore)->Apply(positions);
BENCHMARK(lookFloor)->Apply(positions);
} // namespace
