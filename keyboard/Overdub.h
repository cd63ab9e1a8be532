// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "keyboard/KeptNotes.h"
#include "keyboard/PlayedNoteBook.h"
#include "keyboard/PlayedNotes.h"
#include "score/PlaybackView.h"

#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

class MessageLoop;
class Player;
struct Workspace;

/// While the score plays, what a hand plays is written where the play line stood: each note from the position
/// nearest to its onset to the one nearest to its end, with the instrument it was played with. It stands on
/// the active channel, the first one where that is no melody; what sounds together goes on to further melody
/// channels that are free there. Of what stood there before, only what it overlaps makes room.
///
/// A pass is one step of undo, written when playing ends or pauses, and whenever a loop comes round.
class Overdub final : public PlayedNotes, private PlaybackView {
public:
    static constexpr std::string_view kStep = "Overdub";

    /// All that is referred to outlives it.
    Overdub(Workspace& workspace, Player& player, const MessageLoop& clock);
    Overdub(const Overdub&) = delete;
    Overdub& operator=(const Overdub&) = delete;

    /// Whether passes are taken from now on. What a pass has so far is written when it ends so.
    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return on_; }
    /// Takes back the last pass alone. False, and nothing done, if it isn't what was changed last.
    bool undoPass();

    void struck(int channel, int note, int velocity, int program, double moment) override;
    void ended(int channel, int note, double moment) override;
    void pedal(int channel, bool down, double moment) override;
    void silenced(double moment) override;

private:
    struct Step {
        double moment = 0;
        int position = 0;
    };

    void positionSounds(int position, double moment) override;
    void EnableControls() override { endPass(); }

    void take(PlayedEvent::Kind kind, int channel, int note, double moment, int velocity = 0,
              int program = 0);
    void endPass(std::optional<double> nextStep = std::nullopt);
    [[nodiscard]] int positionAt(double moment) const;
    [[nodiscard]] std::vector<KeptNote> notesOfPass(std::optional<double> nextStep) const;
    [[nodiscard]] double halfStep() const;
    void shareChannels(std::vector<KeptNote>& notes) const;
    [[nodiscard]] bool makeRoom(int last);
    void write(const KeptNote& note);

    Workspace& workspace_;
    const MessageLoop& clock_;
    bool on_ = false;
    PlayedNoteBook book_;
    std::vector<Step> steps_; ///< of the pass; none while there is none
    double began_ = 0;        ///< the first moment whose nearest step is of the pass
    Guests<PlaybackView>::Stay shown_;
};

} // namespace velmora
