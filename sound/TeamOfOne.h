// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// FluidSynth runs its reverb and chorus through OpenMP, with a team of one thread. GNU's OpenMP library
/// takes and gives back memory for such a team at every rendered piece, which an audio thread must not do. So
/// this program carries an entry point of that library's name, which the linker finds first: a team of one is
/// a plain call, and any other team is passed on to the library.
///
/// True if it is in force: calls of that name from any library of the process come here. Callers of
/// FluidSynth ask this once, which also links it in. Thread-safe: yes. Realtime-safe: no.
[[nodiscard]] bool teamsOfOneArePlainCalls();

} // namespace velmora
