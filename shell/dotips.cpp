// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/dotips.h"

#include <array>

namespace velmora {

namespace {

// The spelling is the program's own and stays.
constexpr std::array<LongTip, kLongTipCount> kTips{{
    {"Melody Tableau",
     "The Melody Tableau is the main interface for creating notes. To draw a note, place your curser on the "
     "tableau, depress your left mousebutton and drag the mouse over the tableau from Left to Right until "
     "the "
     "note is as long as you want it, then let go. The row gives the pitch, and you hear the note while you "
     "draw. With Erase on Right-click, a click with the right mousebutton erases the note under your "
     "curser."},
    {"Percussion Tableau",
     "The Percussion Tableau is the interface for creating percussion sounds. Draw a beat as you draw a note "
     "on the Melody Tableau. Below it is a bar. If you need to enlarge the tableau height, place your cursor "
     "on it, hold down the right mousebutton and slide it downwards to expose as much space as you need."},
    {"Note Guide",
     "The guide at the left names the note of each row, such as 5C for the C of octave 5. High notes are at "
     "the top. Names in black are the lines of the staffs. Scroll up or down to reach other octaves."},
    {"Note Indicator and Identifier",
     "Left click on this bar, above a note of the active channel, to see its number, name, volume and "
     "instrument. While the Single Note Effects toolbar is showing, hold down the right mousebutton and drag "
     "along the bar to give the notes under it the effects that you have selected."},
    {"Polynote Selector",
     "A box on this bar marks a note that plays as a chord. Select a chord type, then drag the mouse along "
     "the bar, above the notes of the active channel that should play it."},
    {"Channel Squares",
     "Left Click to activate Channel \nRight click to Activate/Deactivate Channel \nThe notes that you draw "
     "go to the active channel, and its notes are shown in the colour of its square. Channels 1 to 8 play "
     "melody, 9 to 12 percussion."},
    {"Instrument Selector",
     "Select Single note Instrument. Click the button and pick an instrument from the list. Then hold down "
     "the right mousebutton and drag over the notes that should be played by it. You hear each note as you "
     "pass."},
    {"Chord Selector",
     "Select Single note Chord Type. Single Note plays the note alone; the others add the notes of the chord "
     "to it. Then hold down the right mousebutton and drag over the notes that should play the chord."},
    {"Single Note Effects",
     "Select Single note Volume, Select Single note Modulation, Select Single note Pan, Select Single note "
     "Reverb and Select Single note Chorus with these sliders. Then hold down the right mousebutton and drag "
     "along the Note Indicator, above the notes that should have the effects. Every other note stays as it "
     "is."},
    {"Undo all Single Note Effects",
     "Click this button to undo all Individual Note Effects. Caution: this action is permanent and can't be "
     "undone. Save your score before you undo effects."},
    {"Static Note Test",
     "Click on Notes to Play, Not edit them. While the Static Note Test is on, a left click on a note plays "
     "it as it is, with its chord and its effects. Click the button again to go back to drawing notes."},
}};

constexpr LongTip kNone;

} // namespace

const LongTip& dotips(int index) {
    return index >= 1 && index <= kLongTipCount ? kTips[static_cast<std::size_t>(index - 1)] : kNone;
}

} // namespace velmora
