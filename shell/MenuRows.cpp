// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Frmmenu.h"

namespace velmora {

namespace {
constexpr auto kCommand = MenuRow::Kind::Command;
constexpr auto kCheck = MenuRow::Kind::Check;
constexpr auto kChoice = MenuRow::Kind::Choice;
constexpr auto kSubmenu = MenuRow::Kind::Submenu;
constexpr auto kSeparator = MenuRow::Kind::Separator;
} // namespace

const std::vector<MenuRow>& menuRows() {
    static const std::vector<MenuRow> rows{
        // "File"
        {"mnupopup6", "mnuOpen", -1, "Open File", kCommand, "Ctrl+O"},
        {"mnupopup6", "mnuOpenDemo", -1, "Open a demo", kSubmenu, ""},
        {"mnupopup6", "mnuRecent", -1, "Recent files", kSubmenu, ""},
        {"mnupopup6", "mnuspc15", -1, "", kSeparator, ""},
        {"mnupopup6", "mnuSave2", -1, "Save", kCommand, "Ctrl+S"},
        {"mnupopup6", "mnuSaveAs2", -1, "Save as", kCommand, "Ctrl+Shift+S"},
        {"mnupopup6", "mnuExportMidi", -1, "Export as MIDI", kCommand, ""},
        {"mnupopup6", "mnuExportWav", -1, "Export as WAV", kCommand, ""},
        {"mnupopup6", "mnuExportMp3", -1, "Export as MP3", kCommand, ""},
        {"mnupopup6", "mnuspc11", -1, "", kSeparator, ""},
        {"mnupopup6", "mnuNew", -1, "Clear All", kCommand, "Ctrl+N"},
        {"mnupopup6", "mnuspc12", -1, "", kSeparator, ""},
        {"mnupopup6", "mnuExit", -1, "Exit", kCommand, "Ctrl+Q"},
        // "Edit"
        {"mnupopup7", "undo", -1, "Undo Last note", kCommand, "Ctrl+Z"},
        {"mnupopup7", "redo", -1, "Redo", kCommand, "Ctrl+Shift+Z"},
        {"mnupopup7", "mnuspc13", -1, "", kSeparator, ""},
        {"mnupopup7", "mnuCut", -1, "Cut selection", kCommand, "Ctrl+X"},
        {"mnupopup7", "mnuCopy", -1, "Copy selection", kCommand, "Ctrl+C"},
        {"mnupopup7", "mnuPasteInsert", -1, "Paste (insert)", kCommand, "Ctrl+Shift+V"},
        {"mnupopup7", "mnuPasteoverwrite", -1, "Paste (overwrite)", kCommand, "Ctrl+V"},
        {"mnupopup7", "mnuStepEntry", -1, "Step entry (MIDI keyboard)", kCheck, ""},
        {"mnupopup7", "keepPlayed", -1, "Keep what I just played", kCommand, "Ctrl+K"},
        {"mnupopup7", "mnuspc14", -1, "", kSeparator, ""},
        {"mnupopup7", "mnuerase", -1, "Erase on Right-click", kChoice, ""},
        {"mnupopup7", "mnuMenu", -1, "Menu on Right-Click", kChoice, ""},
        {"mnupopup7", "mnuTips", -1, "Show Tips on Right-Click", kChoice, ""},
        // "Play"
        {"mnupopup8", "mnuRewind", -1, "Rewind", kCommand, "Home"},
        {"mnupopup8", "mnuPlay", -1, "Play", kCommand, "Space"},
        {"mnupopup8", "mnupause", -1, "Pause", kCommand, ""},
        {"mnupopup8", "mnuStopPlaying", -1, "Stop Playing", kCommand, "Space"},
        {"mnupopup8", "mnuSpc24", -1, "", kSeparator, ""},
        {"mnupopup8", "mnuStopall", -1, "Stop all sound", kCommand, ""},
        // "Setup", which the label "Tools" opens
        {"mnupopup9", "mnupopup8", -1, "Play", kSubmenu, ""},
        {"mnupopup9", "mnuSpc21", -1, "", kSeparator, ""},
        {"mnupopup9", "mnuSetup", -1, "Setup Toolbar", kCommand, ""},
        {"mnupopup9", "mnuEdit", -1, "Editing Toolbar", kCheck, ""},
        {"mnupopup9", "mnuRecordtool", -1, "Recording Toolbar", kCommand, ""},
        {"mnupopup9", "mnuPercussion", -1, "Percussion Tableau", kCheck, ""},
        {"mnupopup9", "mnuClassic", -1, "Classic behaviour", kCheck, ""},
        {"mnupopup9", "mnuSpc22", -1, "", kSeparator, ""},
        {"mnupopup9", "mnuNotestyle", -1, "Notation Style", kSubmenu, ""},
        {"mnuNotestyle", "mnuNotestyle1", -1, "Colorful Line", kChoice, ""},
        {"mnuNotestyle", "mnuNotestyle2", -1, "Traditional Notation", kChoice, ""},
        {"mnuNotestyle", "mnuSpc23", -1, "", kSeparator, ""},
        {"mnuNotestyle", "mnuAccidentals", -1, "Accidentals", kChoice, ""},
        {"mnuNotestyle", "mnuNoAccidentals", -1, "No Accidentals", kChoice, ""},
        {"mnupopup9", "mnuInterface", -1, "Appearance", kSubmenu, ""},
        {"mnuInterface", "mnuSkin", 1, "XP (Blue)", kChoice, ""},
        {"mnuInterface", "mnuSkin", 2, "3D stylized", kChoice, ""},
        {"mnuInterface", "mnuSkin", 3, "Blue Steel", kChoice, ""},
        {"mnuInterface", "mnuSkin", 4, "Riveted", kChoice, ""},
        {"mnuInterface", "mnuSkin", 5, "Gray Steel", kChoice, ""},
        {"mnuInterface", "mnuSkin", 6, "Gunmetal", kChoice, ""},
        {"mnuInterface", "mnuSkin", 7, "Win 98", kChoice, ""},
        {"mnuInterface", "mnuSkin", 8, "XP (Silver)", kChoice, ""},
        {"mnupopup9", "mnuButtons", -1, "Button Styles", kSubmenu, ""},
        {"mnuButtons", "mnuButton", 2, "Rectangular", kChoice, ""},
        {"mnuButtons", "mnuButton", 3, "Rounded", kChoice, ""},
        {"mnuButtons", "mnuButton", 4, "Hidden", kChoice, ""},
        {"mnuButtons", "mnuButton", 5, "Flat", kChoice, ""},
        {"mnuButtons", "mnuButton", 6, "Round", kChoice, ""},
        {"mnupopup9", "mnuXPtooltextstyle", -1, "Tooltext Style", kSubmenu, ""},
        {"mnuXPtooltextstyle", "mnuXPtooltext", 0, "Rectangular Tooltext", kChoice, ""},
        {"mnuXPtooltextstyle", "mnuXPtooltext", 1, "Balloon Tooltext", kChoice, ""},
        {"mnuXPtooltextstyle", "mnuXPtooltext", 2, "Win 98 Style Tooltext", kChoice, ""},
        // "Help"
        {"mnupopup10", "mnuTutorial", -1, "Tutorial", kCommand, ""},
        {"mnupopup10", "mnuHelpfile", -1, "Help", kCommand, "F1"},
        // "Poli/erase/mnu"
        {"mnupopup11", "mnublank", -1, "", kCommand, ""},
        {"mnupopup11", "mnuerase", -1, "Erase on Right-click", kChoice, ""},
        {"mnupopup11", "mnuMenu", -1, "Menu on Right-Click", kChoice, ""},
        {"mnupopup11", "mnuTips", -1, "Show Tips on Right-Click", kChoice, ""},
        // The keyboard
        {"mnukeybdpopup1", "mnukeybdDock", -1, "Dock Keyboard", kCheck, ""},
        {"mnukeybdpopup1", "mnukeybdclose", -1, "Close", kCommand, ""},
        {"mnukeybdpopup2", "mnukeybdtoolbars", -1, "Toolbars", kCheck, ""},
        {"mnukeybdpopup2", "mnukeybdSound1toolbar", -1, "Sound 1 Toolbar", kCheck, ""},
        {"mnukeybdpopup2", "mnukeybdSound2toolbar", -1, "Sound 2 Toolbar", kCheck, ""},
        {"mnukeybdpopup3", "mnuKeybdsetup", -1, "Setup", kCommand, ""},
        {"mnukeybdpopup3", "mnuKeybdCompose", -1, "Keyboard Composer", kCommand, ""},
        {"mnukeybdpopup4", "mnukeybdHelp", -1, "Help", kCommand, ""},
        // The Recording Studio
        {"mnuRecordpopup1", "mnuRecordOpen", -1, "Open File", kCommand, "Ctrl+O"},
        {"mnuRecordpopup1", "mnuRecordSave", -1, "Save As", kCommand, "Ctrl+S"},
        {"mnuRecordpopup1", "mnuRecordPlay", -1, "Play", kCommand, "Ctrl+P"},
        {"mnuRecordpopup1", "mnuRecordPause", -1, "Pause", kCommand, "Ctrl+Shift+P"},
        {"mnuRecordpopup1", "mnuRecordStop", -1, "Stop", kCommand, "Ctrl+."},
        {"mnuRecordpopup1", "mnuExitRecord", -1, "Close", kCommand, "Ctrl+W"},
        {"mnuRecordpopup2", "RecordStart", -1, "Start Recording", kCommand, "Ctrl+R"},
        {"mnuRecordpopup2", "RecordStop", -1, "Stop Recording", kCommand, "Ctrl+Shift+R"},
        {"mnuRecordpopup2", "mnuEncode", -1, "Encode MP3", kCommand, "Ctrl+E"},
        {"mnuRecordpopup2", "mnuBurnCD", -1, "Burn CD", kCommand, "Ctrl+B"},
        {"mnuRecordpopup3", "mnuRecordHelp", -1, "Help", kCommand, "F1"},
        // The Songwriter
        {"mnusngwriPopup1", "mnuNewscoreSW", -1, "New Score", kCommand, ""},
        {"mnusngwriPopup1", "mnuOpenscoreSW", -1, "Open Score", kCommand, ""},
        {"mnusngwriPopup1", "mnuSavescoreASSW", -1, "Save Score As", kCommand, ""},
        {"mnusngwriPopup1", "mnuOpenLyricsSW", -1, "Open Lyrics", kCommand, ""},
        {"mnusngwriPopup1", "mnuSaveLyricsSW", -1, "Save  Lyrics", kCommand, ""},
        {"mnusngwriPopup1", "mnuPrinttSW", -1, "Print Score", kCommand, ""},
        {"mnusngwriPopup1", "mnuCloseSW", -1, "Close Songwriter", kCommand, ""},
        {"mnusngwriPopup2", "mnuCurrentNotesSW", -1, "Current Notes", kCommand, ""},
        {"mnusngwriPopup2", "mnuAddPageSW", -1, "Add Page", kCommand, ""},
        {"mnusngwriPopup2", "mnuKeySW", -1, "Key", kSubmenu, ""},
        {"mnuKeySW", "mnuCSW", -1, "C", kChoice, ""},
        {"mnuKeySW", "mnuGSW", -1, "G", kChoice, ""},
        {"mnuKeySW", "mnuDSW", -1, "D", kChoice, ""},
        {"mnuKeySW", "mnuASW", -1, "A", kChoice, ""},
        {"mnuKeySW", "mnuESW", -1, "E", kChoice, ""},
        {"mnuKeySW", "mnuBSW", -1, "B", kChoice, ""},
        {"mnuKeySW", "mnuFSW", -1, "F", kChoice, ""},
        {"mnuKeySW", "mnuBflatSW", -1, "Bb", kChoice, ""},
        {"mnuKeySW", "mnuEflatSW", -1, "Eb", kChoice, ""},
        {"mnuKeySW", "mnuAflatSW", -1, "Ab", kChoice, ""},
        {"mnuKeySW", "mnuDflatSW", -1, "Db", kChoice, ""},
        {"mnuKeySW", "mnuGflatSW", -1, "Gb", kChoice, ""},
        {"mnusngwriPopup2", "mnuTextSW", -1, "Text/Lyrics", kSubmenu, ""},
        {"mnuTextSW", "mnuAddTextSW", -1, "Add Text", kCommand, ""},
        {"mnuTextSW", "mnuEditTextSW", -1, "Edit Text", kCommand, ""},
        {"mnuTextSW", "mnuResetTextSW", -1, "Reset Text", kCommand, ""},
        {"mnusngwriPopup3", "mnusngwriSetup", -1, "Setup Toolbar", kSubmenu, ""},
        {"mnusngwriSetup", "mnuScoreSetup", -1, "Score Setup", kCommand, ""},
        {"mnusngwriSetup", "mnuChannelSetup", -1, "Channels", kCommand, ""},
        {"mnusngwriSetup", "mnuTextSetup", -1, "Text", kCommand, ""},
    };
    return rows;
}

} // namespace velmora
