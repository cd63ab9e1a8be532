// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedLog.h"

#include "base/MessageLoop.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <limits>
#include <utility>

namespace velmora {

namespace {
/// Ten minutes of ten notes a second.
constexpr std::size_t kRoom = 6000;
constexpr double kSweep = 60; ///< seconds between looks for old notes

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0, 127));
}
} // namespace

double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

PlayedLog::PlayedLog(std::filesystem::path file, const MessageLoop& clock,
                     const std::function<double()>& wall)
    : clock_(clock)
    , wall_(wall)
    , start_(clock.now())
    , book_(kRoom)
    , swept_(start_)
    , journal_(std::move(file), wall) {}

void PlayedLog::struck(int channel, int note, int velocity, int program, double moment) {
    if (moment > swept_ + kSweep) {
        book_.forgetBefore(std::min(moment - kKept, held_));
        swept_ = moment;
    }
    take({PlayedEvent::Kind::Struck, byte(channel), byte(note), byte(velocity), byte(program), moment});
}

void PlayedLog::ended(int channel, int note, double moment) {
    take({PlayedEvent::Kind::Ended, byte(channel), byte(note), 0, 0, moment});
}

void PlayedLog::pedal(int channel, bool down, double moment) {
    using enum PlayedEvent::Kind;
    take({down ? PedalDown : PedalUp, byte(channel), 0, 0, 0, moment});
}

void PlayedLog::silenced(double moment) {
    take({PlayedEvent::Kind::Silenced, 0, 0, 0, 0, moment});
}

void PlayedLog::take(PlayedEvent event) {
    book_.take(event);
    // The wall's clock may be set at any time: it is asked each time.
    event.moment += wall_() - clock_.now();
    journal_.append(event);
}

std::vector<PlayedNote> PlayedLog::between(double first, double last) const {
    std::vector<PlayedNote> notes = book_.notes(clock_.now());
    std::erase_if(notes, [=](const PlayedNote& note) { return note.onset < first || note.onset > last; });
    return notes;
}

void PlayedLog::metronome(double start, double interval, int beatsPerMeasure) {
    const double now = clock_.now();
    if (!beats_.empty())
        beats_.back().stopped = std::min(beats_.back().stopped, now);
    std::erase_if(beats_, [now](const Beats& beats) { return beats.stopped < now - kKept; });
    if (interval > 0)
        beats_.push_back({start, interval, beatsPerMeasure, std::numeric_limits<double>::infinity()});
}

std::optional<PlayedLog::Beats> PlayedLog::beatsDuring(double first, double last) const {
    const auto ran = std::ranges::find_if(
        beats_, [&](const Beats& beats) { return beats.start <= first && beats.stopped >= last; });
    return ran != beats_.end() ? std::optional(*ran) : std::nullopt;
}

/// What sounded when the earlier run ended has ended with the last that is known of it.
void PlayedLog::readEarlier() {
    const std::vector<PlayedEvent>* events = journal_.earlier();
    if (!events)
        return;
    PlayedNoteBook book(events->size());
    const double shift = clock_.now() - wall_();
    double last = 0;
    for (PlayedEvent event : *events) {
        last = event.moment += shift;
        book.take(event);
    }
    earlier_ = book.notes(last);
    // What has been played since the journal was read would be there twice; this run began later.
    std::erase_if(*earlier_, [this](const PlayedNote& note) { return note.onset >= start_; });
}

std::vector<PlayedNote> PlayedLog::notes() {
    if (!earlier_)
        readEarlier();
    const double now = clock_.now();
    std::vector<PlayedNote> notes = earlier_.value_or(std::vector<PlayedNote>());
    const std::vector<PlayedNote> own = book_.notes(now);
    notes.insert(notes.end(), own.begin(), own.end());
    std::erase_if(notes, [now](const PlayedNote& note) { return note.end < now - kKept; });
    return notes;
}

} // namespace velmora
