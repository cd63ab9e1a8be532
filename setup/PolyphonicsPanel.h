// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <QWidget>

class QCheckBox;
class QComboBox;

namespace velmora {

struct Desk;

/// The panel "Polyphonics": which chord is meant, which melody channels play it, and which strum theirs.
class PolyphonicsPanel : public QWidget {
public:
    PolyphonicsPanel(Desk& desk, QWidget* parent);

    void refresh();

private:
    void addList();
    void addChannels();
    void Ch_Click(int channel);

    Desk& desk_;
    QComboBox* Combo3 = nullptr;
    PerChannel<QCheckBox*, kMelodyChannels> Ch;
    PerChannel<QCheckBox*, kMelodyChannels> Chkstrum;
};

} // namespace velmora
