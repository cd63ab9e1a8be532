// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/InstrumentSample.h"
#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"

#include <cstdint>
#include <functional>

class QListWidget;
class QPushButton;

namespace velmora {

struct Desk;
struct InstrumentSelection;

/// The instrument picker.
///
/// | Control           | The user sees                           | Routine                                 |
/// |-------------------|-----------------------------------------|-----------------------------------------|
/// | `LstInstruments`  | "Melody", the 128 instruments           | double click: `LstInstruments_DblClick` |
/// | `LstInstruments2` | "Percussion", the 47 percussion sounds  | double click: `LstInstruments2_DblClick`|
/// | `CmdOk`           | "Ok"                                    | `CmdOk_Click`, as is Enter              |
/// | `CmdCancel`       | "Cancel"                                | `CmdCancel_Click`, as is Esc            |
///
/// Typing in a list goes to the entry that begins so. An entry that is chosen is heard, unless the score
/// plays.
class FrmInst : public SkinnedWindow {
public:
    /// @param owner the window over which it stands, in the middle
    FrmInst(Desk& desk, QWidget* owner);

    /// What a note of that channel takes: an instrument of the channel's own group, if both were picked.
    [[nodiscard]] static std::int16_t codeFor(PickedInstrument picked, int channel,
                                              const InstrumentSelection& chosen);
    /// It is kept, and the window is gone.
    std::function<void(PickedInstrument)> onPicked;

    /// Comes up with the current instruments selected. Other windows wait until it is closed.
    void open();

    /// Takes the instrument; a percussion sound too, if another one was selected.
    void CmdOk_Click();
    void CmdCancel_Click() { close(); }
    void LstInstruments_DblClick() { CmdOk_Click(); }
    void LstInstruments2_DblClick();

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QListWidget* addList(const char* name, const char* heading, int x);
    [[nodiscard]] QPushButton* addButton(const char* name, const char* caption, int x);
    void selectCurrent();
    void letHear(QListWidget& list, int firstCode);
    void hear(const QListWidget& list, int firstCode);
    void takeMelody(int row);
    void takePercussion(int row);
    void finish(PickedInstrument picked);

    Desk& desk_;
    QListWidget* LstInstruments;
    QListWidget* LstInstruments2;
    QPushButton* CmdOk;
    QPushButton* CmdCancel;
    InstrumentSample sample_;
};

} // namespace velmora
