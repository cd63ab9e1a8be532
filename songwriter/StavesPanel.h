// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <QWidget>

#include <array>
#include <functional>

class QCheckBox;
class QLabel;
class QRadioButton;

namespace velmora {

class NumberField;
struct SongParts;

/// "Channels": which channels are written, and in which clef.
///
/// | Control                            | What it sets                                             |
/// |------------------------------------|----------------------------------------------------------|
/// | `chkChannel`(0 to 11)              | the channels that are written, five at most              |
/// | `ChkNotetype`(0 to 7)              | the bass clef                                            |
/// | `lblTreb`, `LblBass`, `Lbldrums`   | how many staves; `VScroll3`, `VScroll4`, `VScroll6` step |
/// | `Opt`(1 to 5)                      | the staff that is written alone                          |
/// | `chkAllChannels`                   | "Write all channels"                                     |
class StavesPanel : public QWidget {
public:
    StavesPanel(const SongParts& parts, QWidget* parent);
    void refresh();

private:
    void addBoxes();
    void addCounts();
    void addStaves();
    void step(notation::StaffClef clef, int by);

    const SongParts& parts_;
    std::array<QCheckBox*, 12> chkChannel_{};
    std::array<QCheckBox*, 8> ChkNotetype_{};
    std::array<NumberField*, 3> counts_{};
    std::array<QRadioButton*, 5> Opt_{};
    QCheckBox* all_ = nullptr;
    QLabel* most_ = nullptr;
};

} // namespace velmora
