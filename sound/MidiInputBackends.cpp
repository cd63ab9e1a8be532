// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiInputBackend.h"

#include <array>

namespace velmora {

namespace {
constexpr std::array kRows{
    MidiInputBackendRow{"ALSA", createAlsaInput},
    MidiInputBackendRow{"JACK", createJackInput},
};
} // namespace

std::span<const MidiInputBackendRow> midiInputBackendRows() {
    return kRows;
}

std::vector<std::unique_ptr<MidiInputBackend>> createMidiInputBackends() {
    std::vector<std::unique_ptr<MidiInputBackend>> backends;
    backends.reserve(kRows.size());
    for (const auto& row : kRows)
        backends.push_back(row.create());
    return backends;
}

} // namespace velmora
