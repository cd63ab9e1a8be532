// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "synth/SynthPanel.h"

#include <array>

namespace velmora {

class InstrumentField;
class KeyboardBar;

/// `Picture19`, the page "Sound 1": the instrument, the octave, and when a key plays a chord.
class SoundOnePanel : public SynthPanel {
public:
    SoundOnePanel(const SynthParts& parts, QWidget* parent);

    void refresh() override;
    /// What `LblInstrument` reads while the keyboard's program is this one.
    void showInstrument(const QString& name, int program);
    /// Opens the instrument picker, unless the keyboard plays on channel 9.
    void Command5_Click();
    [[nodiscard]] CommandButton& instrumentButton() const { return *Command5; }

protected:
    void layOut(int width) override;

private:
    void addPolynotes();
    void addOctaves();
    void instrumentPicked();

    CommandButton* Command5;
    InstrumentField* LblInstrument;
    KeyboardBar* octave_;
    KeyboardBar* chord_;
    KeyboardBar* strum_;
    std::array<QCheckBox*, 3> polynotes_{}; ///< `Check10`, `Check2`, `Check8`
    QCheckBox* Chkstrum;
    std::array<QRadioButton*, 6> Option5{};
    std::array<QRadioButton*, 8> OptOct{};
    int program_ = -1;
};

} // namespace velmora
