// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/StudioParts.h"
#include "studio/SessionState.h"

#include <QGroupBox>

#include <array>

class QCheckBox;

namespace velmora {

class CommandButton;

/// "After Recording": what becomes of a take, and what else there is to open.
class AfterPanel : public QGroupBox {
public:
    AfterPanel(const StudioParts& parts, SessionState& state, QWidget* parent);

    void refresh();
    [[nodiscard]] CommandButton& volumeControl() { return *Command1; }
    [[nodiscard]] CommandButton& log() { return *log_; }
    [[nodiscard]] CommandButton& burn() { return *LBLBtnCDw; }
    [[nodiscard]] CommandButton& take() { return *take_; }

private:
    void addBoxes(Desk& desk);

    SessionState& state_;
    std::array<QCheckBox*, 3> boxes_{}; ///< `Check2` to `Check4`
    CommandButton* take_;
    CommandButton* LBLBtnCDw;
    CommandButton* Command1;
    CommandButton* log_;
};

} // namespace velmora
