// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/StudioParts.h"
#include "studio/SessionState.h"

#include <QGroupBox>

class QLineEdit;
class QPlainTextEdit;

namespace velmora {

/// "Recording Messages": `Text6`, the file of the session, over `Erbox`, what the session says.
class MessagePanel : public QGroupBox {
public:
    MessagePanel(const StudioParts& parts, SessionState& state, QWidget* parent);

    void refresh();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    SessionState& state_;
    QLineEdit* Text6;
    QPlainTextEdit* Erbox;
    std::string shown_; ///< of the messages
};

/// Gives a box a text of which it may hold the beginning, and goes on showing the end where that was seen.
/// @param shown what the box holds
void followText(QPlainTextEdit& box, std::string& shown, const std::string& text);

} // namespace velmora
