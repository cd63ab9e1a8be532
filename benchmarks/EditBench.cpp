// SPDX-License-Identifier: GPL-2.0-or-later
// Each editing command on a full score, its undo step included.
#include "base/ProgramFolders.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreEditing.h"
#include "composition/Workspace.h"
#include "tests/support/MemorySettings.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <string>

using namespace velmora;

namespace {
/// A workspace of which every cell of every channel but 9 is in use, and the middle half selected.
struct FullWorkspace {
    explicit FullWorkspace(int positions)
        : folders(std::filesystem::path(home.path().toStdString()))
        , workspace(settingsFor(positions), folders) {
        Score& score = workspace.score;
        for (int channel = 0; channel < kUsedChannels; ++channel) {
            if (channel == kFirstPercussion + 1)
                continue;
            for (int position = 0; position <= score.NumNotes; ++position) {
                score.NoteCell.set(channel, position, position % 4 == 0 ? 60 : 1060);
                score.NoteInstrument.set(channel, position, 24);
                score.Volume.set(channel, position, static_cast<std::int16_t>(position % 128));
                score.Pan_Change.set(channel, position, static_cast<std::int16_t>(position / 4 % 128));
            }
        }
        workspace.edit.ChannelPicked.fill(true);
        workspace.edit.CycleNotes = static_cast<std::int16_t>(positions / 2);
        workspace.edit.Txtspc = static_cast<std::int16_t>(positions / 8);
        score.FindEndOfSong();
        workspace.beginHistory();
    }

    void select() {
        workspace.view.SelectStart = workspace.score.NumNotes / 4;
        workspace.view.SelectEnd = workspace.view.SelectStart + workspace.score.NumNotes / 2;
        workspace.view.PlayMark = workspace.score.NumNotes / 8;
    }

    static MemorySettings settingsFor(int positions) {
        MemorySettings settings;
        settings.SaveSetting("Settings", "NumNotes", std::to_string(positions));
        return settings;
    }

    QTemporaryDir home{QStringLiteral("velmora_bench_XXXXXX")};
    ProgramFolders folders;
    Workspace workspace;
};

template<typename Command>
void run(benchmark::State& state, Command command) {
    FullWorkspace full(static_cast<int>(state.range(0)));
    full.select();
    copyIt(full.workspace);
    const Score score = full.workspace.score;
    for (auto _ : state) {
        state.PauseTiming();
        full.workspace.score = score;
        full.select();
        state.ResumeTiming();
        command(full.workspace);
    }
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->ArgName("positions")
        ->Arg(1000)
        ->Arg(32767)
        ->Arg(200000)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

void editCopy(benchmark::State& state) {
    run(state, [](Workspace& workspace) { copyIt(workspace); });
}
BENCHMARK(editCopy)->Apply(sizes);

void editCut(benchmark::State& state) {
    run(state, [](Workspace& workspace) { CutBut_Click(workspace); });
}
BENCHMARK(editCut)->Apply(sizes);

void editPasteOver(benchmark::State& state) {
    run(state, [](Workspace& workspace) { PasteBut_Click(workspace, 0); });
}
BENCHMARK(editPasteOver)->Apply(sizes);

void editPasteInto(benchmark::State& state) {
    run(state, [](Workspace& workspace) { PasteIntoBut_Click(workspace, 0); });
}
BENCHMARK(editPasteInto)->Apply(sizes);

void editInsertSpaces(benchmark::State& state) {
    run(state, [](Workspace& workspace) { InsertColumnBut_Click(workspace, 0); });
}
BENCHMARK(editInsertSpaces)->Apply(sizes);

void editDuplicate(benchmark::State& state) {
    run(state, [](Workspace& workspace) {
        workspace.edit.Check2 = workspace.view.NoteEffectsOn = true;
        workspace.edit.CycleBeats = 12;
        workspace.edit.TotalNotes = INT16_MAX;
        duplicateNotes(workspace, {});
    });
}
BENCHMARK(editDuplicate)->Apply(sizes);

/// The longest melody of the closest stamps.
void editCreateMelody(benchmark::State& state) {
    run(state, [](Workspace& workspace) {
        workspace.edit.CycleBeats = 1;
        workspace.edit.TotalNotes = INT16_MAX;
        createMelody(workspace, 1);
    });
}
BENCHMARK(editCreateMelody)->Apply(sizes);

void editClear(benchmark::State& state) {
    run(state, [](Workspace& workspace) { workspace.clear(); });
}
BENCHMARK(editClear)->Apply(sizes);

void editUndo(benchmark::State& state) {
    FullWorkspace full(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        full.select();
        CutBut_Click(full.workspace);
        state.ResumeTiming();
        if (!full.workspace.undoLast()) // of a large score the file may still be on its way
            state.SkipWithError("nothing was undone");
    }
}
BENCHMARK(editUndo)->Apply(sizes);
} // namespace
