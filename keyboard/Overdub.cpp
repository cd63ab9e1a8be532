// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Overdub.h"

#include "base/MessageLoop.h"
#include "composition/Changes.h"
#include "composition/Player.h"
#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace velmora {

namespace {
/// Notes of a pass that there is memory for at once.
constexpr std::size_t kRoom = 6000;
/// Positions that stay free behind the last note of a Score that has grown.
constexpr int kEndMargin = 10;

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
    std::vector<WrittenNote> notes = notesOfPass(nextStep);
    steps_.clear();
    shareChannels(notes);
    if (notes.empty())
        return;
    Edit edit(workspace_, Change::Cells | Change::Effects | Change::Channels);
    workspace_.history.name(kStep);
    workspace_.keepForUndo(kStep);
    for (const WrittenNote& note : notes)
        if (makeRoom(note.last))
            write(note);
    workspace_.score.FindEndOfSong();
    // A single note in position 0 leaves its channel unused.
    for (const WrittenNote& note : notes)
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

std::vector<Overdub::WrittenNote> Overdub::notesOfPass(std::optional<double> nextStep) const {
    std::vector<WrittenNote> notes;
    for (const PlayedNote& played : book_.notes(clock_.now())) {
        if (played.onset < began_ || (nextStep && played.onset >= *nextStep - halfStep()))
            continue;
        const int first = positionAt(played.onset);
        const int end = positionAt(std::min(played.end, nextStep.value_or(played.end)));
        notes.push_back({0, first, std::max(first, end - 1), played});
    }
    // The topmost first of those that begin together: it goes to the channel that was chosen.
    std::ranges::stable_sort(notes, [](const WrittenNote& one, const WrittenNote& other) {
        return one.first != other.first ? one.first < other.first : one.played.note > other.played.note;
    });
    return notes;
}

/// Gives each note its channel. A key that is let go of a little after the next was struck is no chord, and
/// where no channel is free a note ends when the next begins.
void Overdub::shareChannels(std::vector<WrittenNote>& notes) const {
    const int active = workspace_.score.ActiveChannel;
    const int main = active < kMelodyChannels ? active : 0;
    std::vector<int> ends(kMelodyChannels, -1);
    std::vector<WrittenNote*> last(kMelodyChannels, nullptr);
    std::erase_if(notes, [](const WrittenNote& note) { return note.first < 0; });
    for (WrittenNote& note : notes) {
        for (std::size_t channel = 0; channel < ends.size(); ++channel) {
            WrittenNote* const older = last[channel];
            if (older && older->last == note.first && older->first < note.first)
                ends[channel] = older->last = note.first - 1;
        }
        note.channel = main;
        note.channel = channelFor(note, ends).value_or(main);
        const auto channel = static_cast<std::size_t>(note.channel);
        if (WrittenNote* const older = last[channel]; older && older->last >= note.first) {
            if (older->first == note.first) {
                note.last = note.first - 1; // nothing of it finds room
                continue;
            }
            older->last = note.first - 1;
        }
        ends[channel] = note.last;
        last[channel] = &note;
    }
    std::erase_if(notes, [](const WrittenNote& note) { return note.last < note.first; });
}

/// The chosen one, or else the next where neither the pass nor the Score has anything.
std::optional<int> Overdub::channelFor(const WrittenNote& note, const std::vector<int>& ends) const {
    const Score& score = workspace_.score;
    for (int i = 0; i < kMelodyChannels; ++i) {
        const int channel = (note.channel + i) % kMelodyChannels;
        bool isFree = ends[static_cast<std::size_t>(channel)] < note.first;
        if (i > 0) {
            isFree = isFree && !score.ChannelMuted[channel];
            for (int position = note.first; isFree && position <= note.last; ++position)
                isFree = cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Empty;
        }
        if (isFree)
            return channel;
    }
    return std::nullopt;
}

/// Whether a note that ends there fits into the Score, which grows where it may.
bool Overdub::makeRoom(int last) {
    if (last <= workspace_.score.NumNotes)
        return true;
    return workspace_.manners.growsToFile && setScoreLength(workspace_, std::int64_t{last} + kEndMargin);
}

void Overdub::write(const WrittenNote& note) {
    Score& score = workspace_.score;
    const int channel = note.channel;
    splitAfter(score, channel, note.last);
    for (int position = note.first; position <= note.last; ++position)
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) != CellClass::Empty)
            resetEffects(score, channel, position);
    writeNote(score, {channel, RowToNote(note.played.note), note.first, note.last}); // rows mirror notes
    for (int position = note.first; position <= note.last; ++position) {
        score.NoteInstrument.set(channel, position, note.played.program);
        score.Polyphonics.set(channel + 1, position, 0);
    }
    giveVolume(score, channel, note.played.velocity, {note.first, note.last});
    score.TopChannel = std::max(score.TopChannel, channel);
    score.TopMelodyHint = std::max(score.TopMelodyHint, channel);
}

} // namespace velmora
