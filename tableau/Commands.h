// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"

#include <array>

namespace velmora {

/// `Cmd2`: file, play and block commands.
inline constexpr auto kCmd2 = std::to_array<CommandRow>({
    {"clear", "clear", "", "Clear all notes", "Empty the score and begin a new one"},
    {"open", "open", "", "Open File", "Open a score"},
    {"save", "save", "", "Save as", "Save the score under a name, or as a MIDI file"},
    {"play", "play", "", "Play", "Play notes from Start", CommandPlace::Bar, true},
    {"segment", "segment", "", "Play Segment", "Play the selected part of the score"},
    {"pause", "pause", "", "Pause", "Pause, and play on from here with Play"},
    {"stop", "stop", "", "Stop", "Stop playing"},
    {"rewind", "rewind", "", "Return to Start", "Show the beginning of the score"},
    {"line", "line", "", "Play line", "Show a line that moves along while the score plays", CommandPlace::Bar,
     true},
    {"loop", "loop", "", "Play Continuous Loop", "Play over and over until you stop", CommandPlace::Bar,
     true},
    {"mode", "mode", "", "Draw/Select mode toggle", "Draw Mode is in effect. \nDraw notes by clicking mouse",
     CommandPlace::Bar, true},
    {"copy", "copy", "", "Copy Selection", "Keep a copy of the selected notes"},
    {"cut", "cut", "", "Cut Selection", "Take the selected notes out and keep them"},
    {"overwrite", "overwrite", "", "Paste (Overwrite)",
     "Put the copied notes in place of those that are there"},
    {"insert", "insert", "", "Paste (Insert)", "Put the copied notes between those that are there"},
    {"spaces", "spaces", "", "Insert # Space(s) ", "Move the notes on to make room"},
    {"duplicate", "duplicate", "", "Duplicate notes", "Repeat the first notes along the score"},
});
static_assert(kCmd2.size() == 17 && eachHasAName(kCmd2));

/// The index of a command of `Cmd2`. A name that no row has does not compile.
consteval int cmd2(std::string_view name) {
    return indexOf(kCmd2, name);
}

/// `Lb1`: tools, tool panel, note styles and the right mouse button.
inline constexpr auto kLb1 = std::to_array<CommandRow>({
    {"clear", "clear", "Clear", "Clear all notes", "Empty the score and begin a new one",
     CommandPlace::Editor},
    {"setup", "setup", "Setup", "Setup Toolbar", "Channels, instruments, sound, tempo and MIDI device",
     CommandPlace::BarRight},
    {"keyboard", "keyboard", "Keyboard", "Keyboard", "Play a keyboard with the mouse or the computer's keys",
     CommandPlace::BarRight},
    {"studio", "studio", "Recording", "Recording Studio", "Record what sounds, as WAV or MP3",
     CommandPlace::BarRight},
    {"undo", "undo", "", "Undo Last note", "Take back the last change"},
    {"songwriter", "songwriter", "Songwriter", "Songwriter",
     "Write the score as notes on staves, with lyrics", CommandPlace::BarRight},
    {"silence", "nosound", "", "Stop all sound", "Silence every note at once"},
    {"tutorial", "tutorial", "", "Tutorial", "Learn the program step by step", CommandPlace::BarRight},
    {"help", "help", "", "Help", "Read about this window", CommandPlace::BarRight},
    {"percussion", "percussion", "", "Percussion Tableau", "Show or hide the percussion above the melody",
     CommandPlace::Bar, true},
    {"colourful", "ballline", "", "Colorful Line",
     "Show each note as a ball with a line in its channel's colour", CommandPlace::Bar, true},
    {"traditional", "glyphs", "", "Traditional Notation", "Show each note as it is written in music",
     CommandPlace::Bar, true},
    {"accidentals", "accidental", "", "Accidentals", "Show sharps and flats beside the notes",
     CommandPlace::Bar, true},
    {"erase", "", "Erase", "Erase on Right-click", "A right click on a note erases it",
     CommandPlace::TextLine, true},
    {"menu", "", "Menu", "Menu on Right-Click", "A right click on a Tableau opens a menu",
     CommandPlace::TextLine, true},
    {"tips", "", "Tips", "Show Tips on Right-Click", "A right click on a part of the window tells about it",
     CommandPlace::TextLine, true},
    {"hide", "chevron", "", "Editing Toolbar", "Hide this panel. The Tools menu shows it again",
     CommandPlace::ToolPanel},
    {"maker", "maker", "Melody Maker", "Melody Maker", "Turn a short motif into a long melody",
     CommandPlace::Tab, true},
    {"effects", "effects", "Single Note Effects", "Single Note Effects",
     "Give single notes their own instrument, chord and effects", CommandPlace::Tab, true},
    {"editor", "editor", "Score Editor", "Score Editor", "Copy, cut, paste and duplicate notes",
     CommandPlace::Tab, true},
    {"undo effects", "reset", "Undo Effects", "Undo all Single Note Effects",
     "Click this button to undo all Individual Note Effects. Caution: this action is permanent and can't be "
     "undone. Save your score before you undo effects.",
     CommandPlace::Effects},
    {"static", "static", "Static Test", "Static Note Test (Toggle)", "Click on Notes to Play, Not edit them",
     CommandPlace::Effects, true},
    {"create melody", "maker", "Create Melody", "Create Melody", "Repeat the motif along the score",
     CommandPlace::Maker},
    {"undo melody", "undo", "Undo Melody", "Undo Melody", "Take the created melody back",
     CommandPlace::Maker},
    {"mode", "mode", "Draw", "Draw/Select mode toggle",
     "Draw Mode is in effect. \nDraw notes by clicking mouse", CommandPlace::Editor, true},
    {"copy", "copy", "Copy", "Copy Selection", "Keep a copy of the selected notes", CommandPlace::Editor},
    {"cut", "cut", "Cut", "Cut Selection", "Take the selected notes out and keep them", CommandPlace::Editor},
    {"insert", "insert", "Insert", "Paste (Insert)", "Put the copied notes between those that are there",
     CommandPlace::Editor},
    {"overwrite", "overwrite", "Overwrite", "Paste (Overwrite)",
     "Put the copied notes in place of those that are there", CommandPlace::Editor},
    {"spaces", "spaces", "Insert Spaces", "Insert # Space(s) ", "Move the notes on to make room",
     CommandPlace::Editor},
    {"duplicate", "duplicate", "Duplicate", "Duplicate notes", "Repeat the first notes along the score",
     CommandPlace::Editor},
    {"chord", "", "Chord", "Chord on Right-Click", "Right click gives notes the chord of the list",
     CommandPlace::TextLine, true},
    {"redo", "redo", "", "Redo", "Do again what was taken back last"},
});
static_assert(kLb1.size() == 33 && eachHasAName(kLb1));

/// Likewise of `Lb1`.
consteval int lb1(std::string_view name) {
    return indexOf(kLb1, name);
}

} // namespace velmora
