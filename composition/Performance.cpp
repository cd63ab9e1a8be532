// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Performance.h"

#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "composition/Workspace.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/MidiPort.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace velmora {

namespace {

/// A port that notes each message down, with its moment, and sounds nothing.
class Notepad : public MidiPort {
public:
    Notepad(const MessageLoop& loop, const PlayState& state, Performance& performance)
        : loop_(loop)
        , state_(state)
        , performance_(performance) {}

    const NotePlayer* notes = nullptr; ///< who sends; told before anything is sent

    int deviceCount() override { return 0; }
    std::string deviceName(int /*device*/) override { return {}; }
    int open(int /*device*/) override { return kOk; }
    int close() override { return kOk; }
    void reset() override { note({loop_.now(), 0, true}, -1); }
    void send(std::uint32_t word) override { note({loop_.now(), word, false}, notes->CurrentChannel); }

private:
    void note(const TimedMessage& message, int channel) {
        performance_.messages.push_back(message);
        performance_.origins.push_back({state_.PlayPosition, channel});
    }

    const MessageLoop& loop_;
    const PlayState& state_;
    Performance& performance_;
};

/// As many messages as a score has for its notes, but for chords.
std::size_t messagesExpected(const Score& score) {
    constexpr std::ptrdiff_t kOfANote = 6; // its beginning and end, and four controllers
    std::ptrdiff_t notes = 0;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        notes += std::ranges::count(score.NoteCell.row(channel), CellClass::Head, cellClass);
    return static_cast<std::size_t>(kOfANote * notes);
}

} // namespace

PerformedScore PerformedScore::of(const Workspace& workspace) {
    return {workspace.score, workspace.setup, workspace.chords, workspace.manners};
}

Performance perform(const PerformedScore& performed, const std::optional<PerformedSegment>& segment) {
    Score score = performed.score;
    SetupState setup = performed.setup;
    ChordSteps chords = performed.chords;
    ViewState view;
    PlayState state;
    state.ShowPlayLine = false;

    Performance performance;
    performance.messages.reserve(messagesExpected(score));
    performance.origins.reserve(performance.messages.capacity());
    VirtualLoop loop;
    Notepad port(loop, state, performance);
    Player player({score, setup, view, state, chords, performed.manners}, port, loop);
    port.notes = &player.notes();
    if (segment) {
        view.PlayMark = segment->first;
        state.SegmentEnd = segment->last;
        player.playSegment();
    } else {
        player.PlayAndStop_Click(false);
    }
    performance.seconds = loop.now();
    performance.step = state.StepSeconds;
    performance.first = segment ? segment->first : 0;
    performance.notesPerMeasure = score.NotesPerMeasure;
    performance.beatsPerMeasure = setup.TxtMeter;
    performance.noteValue = setup.NoteX;
    return performance;
}

Performance perform(const Workspace& workspace) {
    return perform(PerformedScore::of(workspace));
}

} // namespace velmora
