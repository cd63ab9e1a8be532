// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "synth/SynthPanel.h"

#include <array>
#include <vector>

class QLineEdit;

namespace velmora {

class KeyboardBar;

/// `Picture4`, the page "Sound 2": the channel and how it sounds, hold and mute, and the metronome.
class SoundTwoPanel : public SynthPanel {
public:
    SoundTwoPanel(const SynthParts& parts, QWidget* parent);

    void refresh() override;
    /// Lights `pctBeat`(number - 1); none for 0.
    void showBeat(int number);

protected:
    void layOut(int width) override;

private:
    class BeatLight;

    void addMetronome();
    void layOutMetronome(int x, bool oneColumn);
    void typed(const QString& text);

    std::vector<KeyboardBar*> bars_;
    QCheckBox* ChkSustain;
    QCheckBox* ChkMute;
    QCheckBox* chkRunning = nullptr;
    QCheckBox* Check9 = nullptr;
    std::array<QRadioButton*, 4> Optbeat{};
    std::array<BeatLight*, 4> pctBeat{};
    QLineEdit* txtValue = nullptr;
};

} // namespace velmora
