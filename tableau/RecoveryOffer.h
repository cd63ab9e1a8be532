// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>

namespace velmora {

class RecoveryFile;
class form1;
class frmskins;

/// Asks about the scores that a crash left, one after the other: Yes brings one back, No removes it, and
/// without an answer everything stays for the next start.
/// @param named the score that the user started the program with, which a Yes keeps shut; blank for none
/// @return whether one was brought back
bool offerRecovery(frmskins& skins, form1& window, RecoveryFile& recovery,
                   const std::filesystem::path& named);

} // namespace velmora
