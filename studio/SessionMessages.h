// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace velmora {

class SessionScreen;
struct SessionState;

/// A line of the message box and of the log, told to who shows them; @p screen may be null.
void say(SessionState& state, SessionScreen* screen, const std::string& text);
/// A line of the log alone, behind the time of day.
void logLine(SessionState& state, std::string_view text);

} // namespace velmora
