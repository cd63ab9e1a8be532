// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PlayedJournal.h"
#include "keyboard/PlayedNoteBook.h"
#include "keyboard/PlayedNotes.h"

#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

class MessageLoop;

/// Seconds on the wall's clock. Thread-safe: yes.
[[nodiscard]] double wallSeconds();

/// Everything that a hand has played, recording or not: the last ten minutes of it, in memory and in a
/// journal. A strike waits for nothing. Moments are those of the loop's clock; of what an earlier run played
/// they lie before `start`, as far back as it was.
class PlayedLog final : public PlayedNotes {
public:
    static constexpr double kKept = PlayedJournal::kKept;

    /// @param wall is called by another thread as well
    PlayedLog(std::filesystem::path file, const MessageLoop& clock,
              const std::function<double()>& wall = wallSeconds);

    /// The journal can't be written. Called once at most, by another thread, in words for the user.
    void onTrouble(std::function<void(const std::string&)> told) { journal_.onTrouble = std::move(told); }

    void struck(int channel, int note, int velocity, int program, double moment) override;
    void ended(int channel, int note, double moment) override;
    void pedal(int channel, bool down, double moment) override;
    void silenced(double moment) override;
    void metronome(double start, double interval, int beatsPerMeasure) override;

    /// The last ten minutes, in the order of their onsets; what sounds ends now.
    [[nodiscard]] std::vector<PlayedNote> notes();
    /// When this run began.
    [[nodiscard]] double start() const { return start_; }

    /// A metronome that ran: beats are at `start` and whole intervals later.
    struct Beats {
        double start = 0;
        double interval = 0; ///< 0 for none
        int perMeasure = 4;
        double stopped = 0; ///< infinite while it runs
    };
    /// The one that ran from the first of these moments to the second.
    [[nodiscard]] std::optional<Beats> beatsDuring(double first, double last) const;

    /// What begins from this moment on stays in memory however long it goes on: a recording, say.
    void holdFrom(double moment) { held_ = moment; }
    /// What this run played from the first moment to the second.
    [[nodiscard]] std::vector<PlayedNote> between(double first, double last) const;

    /// What began up to this moment has been kept.
    void markKept(double moment) { kept_ = moment; }
    /// Nothing was kept yet if there is none.
    [[nodiscard]] std::optional<double> kept() const { return kept_; }

    /// Waits until what was played is on the disk.
    void finish() { journal_.finish(); }

private:
    void take(PlayedEvent event);
    void readEarlier();

    const MessageLoop& clock_;
    std::function<double()> wall_;
    double start_;
    PlayedNoteBook book_;
    std::vector<Beats> beats_;
    std::optional<double> kept_;
    std::optional<std::vector<PlayedNote>> earlier_; ///< moments of the loop's clock
    double held_ = std::numeric_limits<double>::infinity();
    double swept_ = 0; ///< when old notes were forgotten last
    PlayedJournal journal_;
};

} // namespace velmora
