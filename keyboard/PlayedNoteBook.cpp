// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedNoteBook.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace velmora {

namespace {
constexpr double kSounds = std::numeric_limits<double>::infinity();
}

void PlayedNoteBook::take(const PlayedEvent& event) {
    if (event.channel >= sounding_.size() || event.note >= sounding_[0].size())
        return;
    Channel& channel = sounding_[event.channel];
    Sounding& sounding = channel[event.note];
    switch (event.kind) {
    case PlayedEvent::Kind::Struck:
        end(sounding, event.moment);
        sounding = {forgotten_ + static_cast<std::int64_t>(notes_.size()), true};
        notes_.push_back({event.moment, kSounds, event.note, event.velocity, event.channel, event.program});
        break;
    case PlayedEvent::Kind::Ended:
        sounding.held = false;
        if (!pedals_[event.channel])
            end(sounding, event.moment);
        break;
    case PlayedEvent::Kind::PedalDown:
        pedals_[event.channel] = true;
        break;
    case PlayedEvent::Kind::PedalUp:
        pedals_[event.channel] = false;
        for (Sounding& other : channel)
            if (!other.held)
                end(other, event.moment);
        break;
    case PlayedEvent::Kind::Silenced:
        for (Channel& every : sounding_)
            for (Sounding& other : every)
                end(other, event.moment);
        break;
    }
}

void PlayedNoteBook::end(Sounding& sounding, double moment) {
    if (sounding.note >= forgotten_) {
        PlayedNote& note = notes_[static_cast<std::size_t>(sounding.note - forgotten_)];
        note.end = std::max(moment, note.onset);
    }
    sounding.note = kSilent;
}

void PlayedNoteBook::forgetBefore(double moment) {
    // A long note keeps those that began after it; it is one of the last ten minutes too.
    const auto kept =
        std::ranges::find_if(notes_, [moment](const PlayedNote& note) { return note.end >= moment; });
    forgotten_ += kept - notes_.begin();
    notes_.erase(notes_.begin(), kept);
}

std::vector<PlayedNote> PlayedNoteBook::notes(double now) const {
    std::vector<PlayedNote> notes(notes_);
    for (PlayedNote& note : notes)
        if (note.end == kSounds)
            note.end = std::max(now, note.onset);
    return notes;
}

} // namespace velmora
