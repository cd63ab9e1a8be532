// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"

#include <array>

namespace velmora {

/// `Cmd2`: file, play and block commands.
inline constexpr auto kCmd2 = std::to_array<CommandRow>({
    {"clear", "", "Clear all notes", "Empty the score and begin a new one"},
    {"open", "", "Open File", "Open a score"},
    {"save", "", "Save as", "Save the score under a name, or as a MIDI file"},
    {"play", "", "Play", "Play notes from Start", CommandPlace::Bar, true},
    {"segment", "", "Play Segment", "Play the selected part of the score"},
    {"pause", "", "Pause", "Pause, and play on from here with Play"},
    {"stop", "", "Stop", "Stop playing"},
    {"rewind", "", "Return to Start", "Show the beginning of the score"},
    {"line", "", "Play line", "Show a line that moves along while the score plays", CommandPlace::Bar, true},
    {"loop", "", "Play Continuous Loop", "Play over and over until you stop", CommandPlace::Bar, true},
    {"mode", "", "Draw/Select mode toggle", "Draw Mode is in effect. \nDraw notes by clicking mouse",
     CommandPlace::Bar, true},
    {"copy", "", "Copy Selection", "Keep a copy of the selected notes"},
    {"cut", "", "Cut Selection", "Take the selected notes out and keep them"},
    {"overwrite", "", "Paste (Overwrite)", "Put the copied notes in place of those that are there"},
    {"insert", "", "Paste (Insert)", "Put the copied notes between those that are there"},
    {"spaces", "", "Insert # Space(s) ", "Move the notes on to make room"},
    {"duplicate", "", "Duplicate notes", "Repeat the first notes along the score"},
});
static_assert(kCmd2.size() == 17);

/// `Lb1`: tools, tool panel, note styles and the right mouse button.
inline constexpr auto kLb1 = std::to_array<CommandRow>({
    {"clear", "Clear", "Clear all notes", "Empty the score and begin a new one", CommandPlace::Editor},
    {"setup", "Setup", "Setup Toolbar", "Channels, instruments, sound, tempo and MIDI device",
     CommandPlace::BarRight},
    {"keyboard", "Keyboard", "Keyboard", "Play a keyboard with the mouse or the computer's keys",
     CommandPlace::BarRight},
    {"studio", "Recording", "Recording Studio", "Record what sounds, as WAV or MP3", CommandPlace::BarRight},
    {"undo", "", "Undo Last note", "Take back the last change"},
    {"songwriter", "Songwriter", "Songwriter", "Write the score as notes on staves, with lyrics",
     CommandPlace::BarRight},
    {"nosound", "", "Stop all sound", "Silence every note at once"},
    {"tutorial", "", "Tutorial", "Learn the program step by step", CommandPlace::BarRight},
    {"help", "", "Help", "Read about this window", CommandPlace::BarRight},
    {"percussion", "", "Percussion Tableau", "Show or hide the percussion above the melody",
     CommandPlace::Bar, true},
    {"ballline", "", "Colorful Line", "Show each note as a ball with a line in its channel's colour",
     CommandPlace::Bar, true},
    {"glyphs", "", "Traditional Notation", "Show each note as it is written in music", CommandPlace::Bar,
     true},
    {"accidental", "", "Accidentals", "Show sharps and flats beside the notes", CommandPlace::Bar, true},
    {"", "Erase", "Erase on Right-click", "A right click on a note erases it", CommandPlace::TextLine, true},
    {"", "Menu", "Menu on Right-Click", "A right click on a Tableau opens a menu", CommandPlace::TextLine,
     true},
    {"", "Tips", "Show Tips on Right-Click", "A right click on a part of the window tells about it",
     CommandPlace::TextLine, true},
    {"chevron", "", "Editing Toolbar", "Hide this panel. The Tools menu shows it again",
     CommandPlace::ToolPanel},
    {"maker", "Melody Maker", "Melody Maker", "Turn a short motif into a long melody", CommandPlace::Tab,
     true},
    {"effects", "Single Note Effects", "Single Note Effects",
     "Give single notes their own instrument, chord and effects", CommandPlace::Tab, true},
    {"editor", "Score Editor", "Score Editor", "Copy, cut, paste and duplicate notes", CommandPlace::Tab,
     true},
    {"reset", "Undo Effects", "Undo all Single Note Effects",
     "Click this button to undo all Individual Note Effects. Caution: this action is permanent and can't be "
     "undone. Save your score before you undo effects.",
     CommandPlace::Effects},
    {"static", "Static Test", "Static Note Test (Toggle)", "Click on Notes to Play, Not edit them",
     CommandPlace::Effects, true},
    {"maker", "Create Melody", "Create Melody", "Repeat the motif along the score", CommandPlace::Maker},
    {"undo", "Undo Melody", "Undo Melody", "Take the created melody back", CommandPlace::Maker},
    {"mode", "Draw", "Draw/Select mode toggle", "Draw Mode is in effect. \nDraw notes by clicking mouse",
     CommandPlace::Editor, true},
    {"copy", "Copy", "Copy Selection", "Keep a copy of the selected notes", CommandPlace::Editor},
    {"cut", "Cut", "Cut Selection", "Take the selected notes out and keep them", CommandPlace::Editor},
    {"insert", "Insert", "Paste (Insert)", "Put the copied notes between those that are there",
     CommandPlace::Editor},
    {"overwrite", "Overwrite", "Paste (Overwrite)", "Put the copied notes in place of those that are there",
     CommandPlace::Editor},
    {"spaces", "Insert Spaces", "Insert # Space(s) ", "Move the notes on to make room", CommandPlace::Editor},
    {"duplicate", "Duplicate", "Duplicate notes", "Repeat the first notes along the score",
     CommandPlace::Editor},
});
static_assert(kLb1.size() == 31);

} // namespace velmora
