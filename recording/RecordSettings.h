// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

class SettingsStore;
struct SessionState;

/// What the settings keep of the Recording Studio. What they hold that is no choice counts as the one to
/// begin with.
void loadChoices(SessionState& state, const SettingsStore& store);
void saveChoices(const SessionState& state, SettingsStore& store);

} // namespace velmora
