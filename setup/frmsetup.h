// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"

#include <array>

class QAbstractButton;

namespace velmora {

class ChannelsPanel;
class CommandButton;
class MidiPanel;
class PolyphonicsPanel;
class SoundPanel;
class StaffPanel;
class TimingPanel;
struct Desk;

/// The setup toolbar, titled "Editor": channels, instruments, sound, timing and the MIDI device. It floats
/// over the composing window, and shows what the workspace holds, which has read the settings: a toolbar that
/// comes up later changes no score that is open by then.
///
// clang-format off
/// | Panel of `Lmnu`(i)        | Controls                           | What they set                            |
/// |---------------------------|------------------------------------|------------------------------------------|
/// | 0 "Polyphonics"           | `Combo3`, `Ch`(c), `Chkstrum`(c)   | chords of a whole channel                |
/// | 1 "Channels"              | `TrackSel`(c), `TrackHide`(c)      | the active channel, hidden channels      |
/// |                           | `LblInst1`, `LblInst2`, `Label2`   | the instruments: a click picks; the volume |
/// | 2 "Sound "                | `lblVolume`, `Label15`             | volume of the active channel             |
/// |                           | `LblMod`, `LblPan`, `LblReverb`, `LblChorus`, `LMod`, `LPan`, `LReverb`, `LChorus` | its controllers |
/// | 3 "Timing"                | `LblTempo`, `TempoLabel`           | the tempo                                |
/// |                           | `TxtMeter` with `VScroll1`, `NoteX` with `VScroll2`, `TxBeats` | the meter    |
/// | 4 "Midi"                  | `Combo2`                           | the MIDI device                          |
/// |                           | `Text1`, `Text2`, `Command1`, `Command4` | the score's length                 |
/// | 5 "Staff Configuration"   | `ChTreble`, `ChBass`, `Check1`     | staff lines and bands on the Tableau     |
/// |                           | `Text3` with `VScroll3`            | the height of its rows                   |
// clang-format on
///
/// Folded it is its title and its tabs; a tab or the button beside them unfolds it.
///
/// The pointer of a slider (`lblVolumePtr2`, `LblTempoPtr` and so on) is a part of its bar.
class frmsetup : public SkinnedWindow, private Watcher {
public:
    /// @param composing the window over which it floats; it may be null
    frmsetup(Desk& desk, QWidget* composing);
    ~frmsetup() override;

    /// Comes up, and will at the next start. `close()` hides it, and keeps it away then.
    void open(Windows::Focus focus = Windows::Focus::Take);
    /// The program ends: the settings are written, and a close after that counts no more. It is to be called
    /// before the windows are closed, or the toolbar is taken for one that the user has closed.
    void unload();

    void Lmnu_Click(int index);
    /// Title and tabs alone, or all of it. What it moves by, to be wholly on the screen, it moves back by
    /// when it is folded where it stands.
    void setFolded(bool folded);
    [[nodiscard]] bool isFolded() const { return folded_; }
    void TrackSel_Click(int channel);
    void TrackHide_Click(int channel, bool hidden);
    /// Opens the instrument picker.
    void LblInst_DblClick();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    static constexpr int kPanels = 6;

    void changed(Changes changes) override;
    void showPanels(Changes changes);

    [[nodiscard]] std::array<QAbstractButton*, kPanels> addTabs();
    void addKeys();
    void addFoldButton();
    void showFolded();
    void saveSettings();
    void openAtStoredPlace();
    [[nodiscard]] bool keeps(const QKeyEvent& event) const;
    void instrumentPicked(bool forActiveChannel);
    void previewInstrument();
    void lblVolume_Change(std::int16_t value);

    Desk& desk_;
    std::array<QAbstractButton*, kPanels> Lmnu; // first, in the order of Tab
    QWidget* page_;
    PolyphonicsPanel* polyphonics_;
    ChannelsPanel* channels_;
    SoundPanel* sound_;
    TimingPanel* timing_;
    MidiPanel* midi_;
    StaffPanel* staff_;
    CommandButton* fold_ = nullptr;
    Guests<Watcher>::Stay watching_;
    bool folded_ = false;
    QPoint unfoldedFrom_; ///< where it stood folded, and where it went from there
    QPoint unfoldedTo_;
    bool unloaded_ = false;
};

} // namespace velmora
