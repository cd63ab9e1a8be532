// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/StudioParts.h"
#include "studio/SessionState.h"

#include <QGroupBox>

#include <array>
#include <functional>

class QRadioButton;

namespace velmora {

class ExToolTip;
class LevelBars;
class SessionButton;

/// "Recording Source": what is played while it records, what of that is taken, how loud it is, and the two
/// buttons.
class SourcePanel : public QGroupBox {
public:
    SourcePanel(const StudioParts& parts, SessionState& state, QWidget* parent);

    /// Shows the state; all but "Stop Recording" is disabled while it is locked.
    void refresh();
    [[nodiscard]] LevelBars& levels() { return *levels_; }
    [[nodiscard]] SessionButton& start() { return *CmdrecordSNG; }
    [[nodiscard]] SessionButton& stop() { return *CmdStopRecording; }

private:
    void addSources(ExToolTip& tips);
    void addButtons(const StudioParts& parts);

    SessionState& state_;
    std::array<QRadioButton*, 3> sources_{}; ///< `Optsourcesng`, `Optsourcemid`, `Optsourcekeyboard`
    QComboBox* capture_;
    LevelBars* levels_;
    SessionButton* CmdrecordSNG = nullptr;
    SessionButton* CmdStopRecording = nullptr;
};

} // namespace velmora
