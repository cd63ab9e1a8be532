// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// How the program deals with a user's music where its old rules would lose or falsify it. Each field is one
/// departure from those rules: rooms read the field, so that none is written twice.
struct Manners {
    /// A score that was opened sounds on all its channels: `TopChannel` is the highest in use, and the high
    /// marks follow. Otherwise channels above 1 are silent until each was selected.
    bool playsOpenedChannels = false;
    /// Choosing a channel in the setup toolbar shows its effects and its instrument, and a layer is written
    /// when the user moves that slider. Otherwise choosing alone rewrites the four layers of the channel, its
    /// instrument, and that of its notes within the selection.
    bool choosingKeepsEffects = false;
    /// A chord that is chosen in a list is stored as its type, for a whole note, and where playing reads it.
    /// Otherwise the setup toolbar stores the list index, one below it.
    bool storesChordType = false;
    /// Block commands work on one set: the ticked channels, else the active one. Otherwise copying asks the
    /// boxes, cutting the mutes.
    bool oneChannelSet = false;
    /// Copy and Cut take what is marked, both ends included. Otherwise Copy takes `CycleNotes` positions and
    /// Cut leaves one behind.
    bool takesWhatIsMarked = false;
    /// Every change can be undone and redone, in order. Otherwise there is one step.
    bool undoesEverything = false;
    /// A MIDI file has the messages and moments of playing. Otherwise chords take other channels' places, and
    /// `Tempo` counts as beats per minute.
    bool exportsWhatIsHeard = false;
    /// "Create Melody" begins at the column that Start names, and blank fields of a cycle stand for the
    /// worked example. Otherwise it begins one further right, and a blank length or loop is 8.
    bool motifBeginsAtStart = false;
    /// Save writes to the score's own file, and questions come when, and only when, something is unsaved.
    /// Otherwise Save always asks for a name, Open asks nothing, leaving always asks.
    bool asksBeforeLoss = false;
    /// The score grows to hold a file that is opened, and what is played into it. Otherwise what is past
    /// `NumNotes` is dropped.
    bool growsToFile = false;
    /// Steps of playing fall at start + n steps. Otherwise each waits its time after its work.
    bool keepsTime = false;
    /// Single Note Effects give a note all that the page shows. Otherwise instrument and chord alone.
    bool givesWholeNoteAllEffects = false;
    /// "Trk" counts channels as the squares do. Otherwise the four percussion channels count on from 8.
    bool readsChannelAsSquare = false;
    /// Heads of notes lie over the bars of all channels, and none is cut at the left edge. Otherwise each
    /// channel is painted whole, one after the other.
    bool showsHeadsWhole = false;
    /// The play line stands out from the paper. Otherwise it is a pale hairline.
    bool showsPlayLineBoldly = false;
    /// The names of rows grow with the rows. Otherwise they have two sizes.
    bool growsRowNames = false;
    /// A release of a key ends what its press struck, and the last one everything. Otherwise it ends the
    /// notes of the key under the present octave and chord, and others go on sounding.
    bool endsWhatWasStruck = false;
    /// Choosing a channel on the keyboard sends its instrument. Otherwise it sends nothing.
    bool sendsChannelInstrument = false;
    /// The height at which the mouse presses a key is the velocity. Otherwise that is 100.
    bool playsByHeight = false;
    /// A recording of the keyboard can be saved as the notes that were played. Otherwise as its trace alone.
    bool savesNotesAsPlayed = false;
    /// An MP3 file has the rate and channels of the take. Otherwise those of a row of the encoder's table.
    bool encodesAsRecorded = false;
    /// Printing goes on at once. Otherwise it waits 4 seconds first, and one before each sheet.
    bool printsWithoutWaiting = false;
    /// Texts that were placed on pages of notation stay when the score is written anew. Otherwise they go
    /// with their pages.
    bool keepsPlacedTexts = false;

    bool operator==(const Manners&) const = default;

    /// The old rules, to the letter.
    [[nodiscard]] static constexpr Manners classic() { return {}; }
    /// Nothing is lost or falsified: the default.
    [[nodiscard]] static constexpr Manners careful() {
        return {true, true, true, true, true, true, true, true, true, true, true, true,
                true, true, true, true, true, true, true, true, true, true, true};
    }
    [[nodiscard]] static constexpr Manners of(bool isClassic) { return isClassic ? classic() : careful(); }
};

} // namespace velmora
