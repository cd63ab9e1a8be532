// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Overdub.h"

#include "base/MessageLoop.h"
#include "composition/Changes.h"
#include "composition/Player.h"
#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace velmora {

namespace {
/// Notes of a pass that there is memory for at once.
constexpr std::size_t kRoom = 6000;

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0, 127));
}
} // namespace

Overdub::Overdub(Workspace& workspace, Player& player, const MessageLoop& clock)
    : workspace_(workspace)
    , clock_(clock)
    , book_(kRoom)
    , shown_(player.show(*this)) {}

void Overdub::setOn(bool on) {
    if (on == on_)
        return;
    if (on)
        book_ = PlayedNoteBook(kRoom);
    else
        endPass();
    on_ = on;
}

bool Overdub::undoPass() {
    return workspace_.undoStep() == kStep && workspace_.undoLast();
}

void Overdub::struck(int channel, int note, int velocity, int program, double moment) {
    take(PlayedEvent::Kind::Struck, channel, note, moment, velocity, program);
}

void Overdub::ended(int channel, int note, double moment) {
    take(PlayedEvent::Kind::Ended, channel, note, moment);
}

void Overdub::pedal(int channel, bool down, double moment) {
    take(down ? PlayedEvent::Kind::PedalDown : PlayedEvent::Kind::PedalUp, channel, 0, moment);
}

void Overdub::silenced(double moment) {
    take(PlayedEvent::Kind::Silenced, 0, 0, moment);
}

void Overdub::take(PlayedEvent::Kind kind, int channel, int note, double moment, int velocity, int program) {
    if (on_)
        book_.take({kind, static_cast<std::uint8_t>(std::clamp(channel, 0, 15)), byte(note), byte(velocity),
                    byte(program), moment});
}

void Overdub::positionSounds(int position, double moment) {
    if (!on_)
        return;
    if (!steps_.empty() && position != steps_.back().position + 1)
        endPass(moment);
    if (steps_.empty()) {
        began_ = moment - halfStep();
        book_.forgetBefore(began_);
    }
    steps_.push_back({moment, position});
}

double Overdub::halfStep() const {
    return workspace_.play.StepSeconds / 2.0;
}

/// @param nextStep when the first step of another pass came; none if none follows at once
void Overdub::endPass(std::optional<double> nextStep) {
    if (steps_.empty())
        return;
    std::vector<KeptNote> notes = notesOfPass(nextStep);
    steps_.clear();
    shareChannels(notes);
    if (notes.empty())
        return;
    Edit edit(workspace_, Change::Cells | Change::Effects | Change::Channels);
    workspace_.history.name(kStep);
    workspace_.keepForUndo(kStep);
    for (const KeptNote& note : notes)
        if (makeRoom(note.last))
            write(note);
    workspace_.score.FindEndOfSong();
    // A single note in position 0 leaves its channel unused.
    for (const KeptNote& note : notes)
        workspace_.score.ChannelInUse[note.channel] = workspace_.score.ChannelShown[note.channel] = true;
}

/// The nearest one; before the first and behind the last step they count on.
int Overdub::positionAt(double moment) const {
    const auto later = std::ranges::upper_bound(steps_, moment, {}, &Step::moment);
    if (later == steps_.begin())
        return later->position;
    const Step& before = *(later - 1);
    if (later != steps_.end())
        return moment - before.moment < later->moment - moment ? before.position : later->position;
    return before.position +
           static_cast<int>(std::lround((moment - before.moment) / workspace_.play.StepSeconds));
}

std::vector<KeptNote> Overdub::notesOfPass(std::optional<double> nextStep) const {
    std::vector<KeptNote> notes;
    for (const PlayedNote& played : book_.notes(clock_.now())) {
        if (played.onset < began_ || (nextStep && played.onset >= *nextStep - halfStep()))
            continue;
        const int first = positionAt(played.onset);
        const int end = positionAt(std::min(played.end, nextStep.value_or(played.end)));
        notes.push_back({0, first, std::max(first, end - 1), played.note, played.velocity, played.program});
    }
    std::ranges::stable_sort(notes, comesBefore);
    return notes;
}

/// Gives each note its channel. A key that is let go of a little after the next was struck is no chord, and
/// where no channel is free a note ends when the next begins.
void Overdub::shareChannels(std::vector<KeptNote>& notes) const {
    const int active = workspace_.score.ActiveChannel;
    const int main = active < kMelodyChannels ? active : 0;
    SharedChannels channels(workspace_.score, main);
    std::array<KeptNote*, kMelodyChannels> latest{};
    std::erase_if(notes, [](const KeptNote& note) { return note.first < 0; });
    for (KeptNote& note : notes) {
        for (KeptNote* const older : latest)
            if (older && older->last == note.first && older->first < note.first)
                channels.endsAt(older->channel, --older->last);
        note.channel = channels.roomFor(note.first, note.last).value_or(main);
        KeptNote*& older = latest[static_cast<std::size_t>(note.channel)];
        if (older && older->last >= note.first) {
            if (older->first == note.first) {
                note.last = note.first - 1; // nothing of it finds room
                continue;
            }
            older->last = note.first - 1;
        }
        channels.endsAt(note.channel, note.last);
        older = &note;
    }
    std::erase_if(notes, [](const KeptNote& note) { return note.last < note.first; });
}

/// Whether a note that ends there fits into the Score, which grows where it may.
bool Overdub::makeRoom(int last) {
    if (last <= workspace_.score.NumNotes)
        return true;
    return workspace_.manners.growsToFile && setScoreLength(workspace_, std::int64_t{last} + kEndMargin);
}

void Overdub::write(const KeptNote& note) {
    Score& score = workspace_.score;
    const int channel = note.channel;
    splitAfter(score, channel, note.last);
    for (int position = note.first; position <= note.last; ++position)
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) != CellClass::Empty)
            resetEffects(score, channel, position);
    writeKept(score, note);
}

} // namespace velmora
