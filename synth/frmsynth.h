// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Alarm.h"
#include "composition/Changes.h"
#include "keyboard/CountIn.h"
#include "keyboard/Keyboard.h"
#include "keyboard/Keymap.h"
#include "keyboard/MidiToKeyboard.h"
#include "keyboard/Overdub.h"
#include "keyboard/PlayedNotesFork.h"
#include "keyboard/TakeStack.h"
#include "parts/CommandBank.h"
#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"
#include "synth/Docking.h"
#include "synth/KeyPresses.h"
#include "synth/SynthPanel.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

class QAbstractButton;

namespace velmora {

class ComposePanel;
class KeyArea;
class PanicBar;
class RecordLamp;
class SchemePanel;
class SoundOnePanel;
class SoundTwoPanel;
struct Desk;

/// The on-screen keyboard: 44 keys that the mouse, the computer's keys and MIDI keyboards play.
///
// clang-format off
/// | Control                    | The user sees                      | What it presses                         |
/// |----------------------------|------------------------------------|-----------------------------------------|
/// | `Lb1`(1 to 15)             | the command strip                  | Commands.h; frmsynthCommands.cpp        |
/// | `Label8`                   | whether a recording goes on        |                                         |
/// | `Lmnu`(1) "Setup"          | `Picture16`: the file of the scheme, devices | `Command1`, `Command6`, `Check1`, `Combo1` |
/// | `Lmnu`(2) "Compose"        | `Picture17`: a take and its score  | `LblSpeed`, `LblPauses`, `LblFileSpeed`, `LblTempo`, `Check3`, `Check5` |
/// | `Lmnu`(3) "Sound 1"        | `Picture19`: instrument, octave, chords | `Command5`, `LblOct`, `Option5`, `LblCrd`, `LblStrum`, `Check10`, `Check2`, `Check8`, `Chkstrum` |
/// | `Lmnu`(4) "Sound 2"        | `Picture4`: channel, effects, metronome | `LblCh`, `lblVolume`, `LblMod`, `LblPan`, `LblReverb`, `LblChorus`, `ChkSustain`, `ChkMute`, `chkRunning`, `Optbeat`, `txtValue`, `Check9` |
/// | `Lmnu`(5 to 7)             | "Tools", "Help", "Close"           | a menu, the help, the window's end      |
/// | `Label4`                   | the panic bar                      | stops all sound, as bare `Picture1` does |
/// | `CmdKey`, `NoteX`(0 to 43) | the keys and their labels          | a strike; a label to be typed over      |
// clang-format on
///
/// Keys of the computer play wherever the focus is in the window, but for fields that text is typed in.
/// Closed, the window is hidden and silent; what was recorded is still there when it comes up again.
class frmsynth : public SkinnedWindow, private KeyboardView, private MidiListener, private Watcher {
public:
    /// @param composing the window whose width is the measure of the first opening, and which comes back when
    /// the keyboard is closed; it may be null
    frmsynth(Desk& desk, QWidget* composing);
    ~frmsynth() override;

    /// Comes up, and is loaded if it was closed.
    void open(Windows::Focus focus = Windows::Focus::Take);
    /// Silence, and the settings are written; nothing if it is closed.
    void unload();
    /// Asks where a recording would be cut off.
    [[nodiscard]] bool mayEnd();

    void Lmnu_Click(int index);
    void CmdEd_Click();
    void Command1_Click(); ///< opens a scheme
    void Command6_Click(); ///< saves it
    void Command3_Click(); ///< shows or hides the editing strip
    void CmdRec_Click();
    void CmdRecord_Click(); ///< saves the take as a score
    [[nodiscard]] bool showsStrip() const { return stripShown_; }

    [[nodiscard]] Keyboard& keyboard() { return keyboard_; }
    /// Does what is due; the alarm calls it.
    void runDue();
    /// Sets the alarm to what is due next: to be called after the keyboard was played from elsewhere.
    void arm();

    /// What "Fit my keyboard" reads the computer's keys from: the layout in use.
    std::function<std::optional<Keymap>()> keymap;
    /// "Dock Keyboard": under the composing window, from now on and at the next opening.
    void setDocked(bool docked);
    /// Plays one of the last takes, which is the one to be saved from now on.
    void chooseTake(std::size_t index);

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    [[nodiscard]] QWidget* ringed(QWidget* focused) const override;

private:
    class KeyWatch;
    static constexpr int kTabs = 7;
    static constexpr int kPages = 4;

    // KeyboardView
    void showKey(int key, bool sounds) override;
    void showBeat(int number) override;
    void showTransport() override;
    void showPosition(int position) override;
    bool confirmOverwrite() override;

    void changed(Changes changes) override;

    // MidiListener, after the keyboard has heard the message
    void midiMessage(int source, std::uint32_t word, double moment) override;
    void midiEnded(int source) override;
    void midiSourcesChanged() override;

    void addTabs();
    void addKeys();
    void bindCommands();
    void bindMenu();
    void layOut();
    void layOutStrip();
    void load();
    void loadScheme();
    void openAtStoredPlace();
    void saveSettings();

    void showPage(int page);
    void popUpTools();
    void setEditing(bool on);
    void takeScheme(const KeyScheme& scheme, const std::string& path);
    void chooseScheme(int index);
    void fitKeyboard();
    void chooseDevice(int item);
    void setStepEntry(bool on);
    void countIn();
    void endCountIn();
    void lookAtTake();
    void popUpTakes(QWidget& button);
    void panic(bool lit);
    void releaseKeys();
    void releaseAll();
    [[nodiscard]] bool takesKeys() const;
    [[nodiscard]] bool keyEvent(const QKeyEvent& event, const QWidget& receiver);

    [[nodiscard]] std::vector<PlayedNote> notesOfTake() const;
    [[nodiscard]] std::optional<bool> asksForNotes(bool hasTrace);
    [[nodiscard]] std::string saveNotes(const std::filesystem::path& path);

    /// A control was used: shows everything anew.
    void used();

    Desk& desk_;
    QPointer<QWidget> composing_;
    Keyboard keyboard_;
    SynthParts parts_;
    CommandBank Lb1_;
    std::array<QAbstractButton*, kTabs> Lmnu_{};
    RecordLamp* lamp_;
    QWidget* page_;
    SchemePanel* scheme_;
    ComposePanel* compose_;
    SoundOnePanel* soundOne_;
    SoundTwoPanel* soundTwo_;
    std::array<SynthPanel*, kPages> pages_{};
    PanicBar* panicBar_;
    Overdub overdub_;
    PlayedNotesFork played_;
    Docking docking_;
    CountIn countIn_;
    TakeStack takes_;
    Alarm takesAlarm_; ///< the next look at the take that goes on
    /// When the recording of the take was begun and ended, on the loop's clock; not of one from the stack.
    struct Span {
        double first;
        double last; ///< infinite while it goes on
    };
    std::optional<Span> recorded_;
    bool mayOverwrite_ = false; ///< the question has been answered
    KeyArea* Picture1_;
    Alarm alarm_;
    std::optional<double> armedTo_; ///< on the loop's clock
    KeyPresses presses_;
    /// What is there while the window is loaded.
    std::unique_ptr<KeyWatch> keyWatch_;
    std::optional<MidiToKeyboard> midi_;
    Guests<MidiListener>::Stay listening_;
    std::string KeyFilePath_;
    std::filesystem::path schemeFolder_;
    std::filesystem::path scoreFolder_;
    bool stripShown_ = true;
    bool loaded_ = false;
    Guests<Watcher>::Stay watching_;
};

} // namespace velmora
