// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SessionMessages.h"

#include "studio/SessionScreen.h"
#include "studio/SessionState.h"

#include <QTime>

namespace velmora {

void say(SessionState& state, SessionScreen* screen, const std::string& text) {
    state.Erbox.append(text).append("\n");
    logLine(state, text);
    if (!screen)
        return;
    screen->said(text);
    screen->sessionChanged();
}

void logLine(SessionState& state, std::string_view text) {
    state.Text2 += QTime::currentTime().toString("HH:mm:ss").toStdString();
    state.Text2.append("  ").append(text).append("\n");
}

} // namespace velmora
