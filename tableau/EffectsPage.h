// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/ToolPage.h"

#include <array>
#include <cstdint>
#include <functional>

class QComboBox;

namespace velmora {

class EffectGraph;
class InstrumentField;
class ReadOut;
class Slider;
class StepMark;
struct Workspace;

/// `TB2` "Single Note Effects".
///
// clang-format off
/// | Control                      | The user sees                                             | What it sets                     |
/// |------------------------------|-----------------------------------------------------------|----------------------------------|
/// | `Check1`                     | "Single Note", pressed while it is on                     | `NoteEffectsOn`                  |
/// | `Text5`, `CmdInst`           | "Instrument", and the picker                              | `onPickInstrument`               |
/// | `Combo3`, `chordHint`        | "Chord", and its notes                                    | `Combo3`, the steps of the chord |
/// | `lblVolume`, `vol3`          | "Volume"                                                  | `vol3`                           |
/// | `LblMod` to `LblChorus`      | "Modulation", "Pan", "Reverb", "Chorus"                   | `T1` to `T4`                     |
/// | `Isld` to `Isld3`            | "[-<<|>>+]" under a read-out: in tens                     | the same                         |
/// | `L1a` to `L4a`               | behind a note, the value that the note looked at has      |                                  |
/// | `Lb1`(20), (21)              | "Undo Effects", "Static Test"                             |                                  |
// clang-format on
class EffectsPage : public ToolPage {
public:
    EffectsPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent);

    std::function<void()> onPickInstrument;     ///< `CmdInst`, and a click on `Text5`
    std::function<void(int type)> onChord;      ///< chosen, and kept
    std::function<void(bool on)> onNoteEffects; ///< `Check1` was pressed

    void layOut(FormWidth width) override;
    void refresh() override;
    /// Shows the values at a position, and moves the pointers there: `doNotemod`. The selectors keep their
    /// own values. Pan as shown, -64 to 63.
    void showEffects(int mod, int pan, int reverb, int chorus);
    /// The graph boxes follow the position that plays: `domodgraph`.
    void showGraph(int mod, int pan, int reverb, int chorus);
    /// `Check1` is the face of `NoteEffectsOn`.
    void showOn(bool on);

private:
    struct Form;

    static constexpr std::size_t kEffects = 5;

    struct Effect {
        QLabel* caption = nullptr;
        Slider* strip = nullptr;
        ReadOut* value = nullptr;
        StepMark* mark = nullptr;
        QLabel* here = nullptr;       ///< of the position; none for the volume
        QLabel* note = nullptr;       ///< the sign before it, shown with it
        EffectGraph* graph = nullptr; ///< `Picture6`, likewise
    };

    void addInstrument();
    void addChord();
    void addEffects();
    void connectEffect(std::size_t effect);
    void setEffect(std::size_t effect, int value);
    void Check1_Click();
    void Combo3_Click(int type);
    void showHint();
    void tellWhatIsGiven();
    int place(const Form& form);
    int placeLists(int x, const Form& form);
    int placeEffects(int x, const Form& form);

    Workspace& workspace_;
    CommandButton* Check1;
    QLabel* instrumentCaption_ = nullptr;
    InstrumentField* Text5 = nullptr;
    CommandButton* CmdInst = nullptr;
    QLabel* chordCaption_ = nullptr;
    QComboBox* Combo3 = nullptr;
    QLabel* chordHint = nullptr;
    QString hint_;
    std::array<Effect, kEffects> effects_;
};

} // namespace velmora
