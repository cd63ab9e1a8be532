// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Characters (code points) of a device's name in a list.
inline constexpr std::size_t kPortNameLength = 32;

/// A port's full name ("client:port" in UTF-8, as the back ends give it) made fit for a list: the client's
/// name is left out where the port's repeats it, control characters become spaces and broken bytes question
/// marks, and what is beyond `kPortNameLength` characters is cut off.
[[nodiscard]] std::string shortPortName(std::string_view fullName);

/// True for ALSA's "Midi Through", which stands on every machine and hands on to nothing by itself. Who
/// picked it would hear nothing, and who knows what to do with it can connect to our port as well.
[[nodiscard]] bool isLoopback(std::string_view fullName);

/// True for a port of ours, or of another Velmora: "Velmora:Output", "Velmora-01:Output".
[[nodiscard]] bool isOurPort(std::string_view fullName);

/// True for a port by which a bridge shows JACK's clients what ALSA's sequencer has: who hears the sequencer
/// itself would hear it twice.
/// @param alias another name of the port; blank for none
[[nodiscard]] bool bridgesSequencer(std::string_view fullName, std::string_view alias);

/// Short names of all, in the same order, no two alike: those that would be get " 2", " 3" and so on at their
/// end, still within `kPortNameLength` characters.
[[nodiscard]] std::vector<std::string> shortPortNames(std::span<const std::string> fullNames);

} // namespace velmora
