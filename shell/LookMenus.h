// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QObject;

namespace velmora {

class Frmmenu;
class SettingsStore;
class frmskins;

/// Binds the entries that choose a skin, a button style or a style of tool text, for as long as @p owner
/// lives. Their ticks follow the settings.
void bindLooks(QObject& owner, Frmmenu& menu, frmskins& skins, SettingsStore& settings);

} // namespace velmora
