// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/StudioParts.h"
#include "studio/SessionState.h"

#include <QGroupBox>

namespace velmora {

class CommandButton;
class ExToolTip;

/// "Formats": of the WAV and of the MP3 file, and `Command20`, "Encode File" or "Stop Encoding". What is
/// chosen is kept in the settings.
class FormatPanel : public QGroupBox {
public:
    FormatPanel(const StudioParts& parts, SessionState& state, QWidget* parent);

    void refresh();
    [[nodiscard]] CommandButton& encode() { return *Command20; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    SessionState& state_;
    ExToolTip& tips_;
    QComboBox* cbxFormat;
    QComboBox* Combo3;
    QComboBox* Combo4;
    CommandButton* Command20;
};

} // namespace velmora
