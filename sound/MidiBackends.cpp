// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiBackends.h"

#include <array>

namespace velmora {

namespace {
constexpr std::array kRows{
    MidiBackendRow{"ALSA", createAlsaBackend},
    MidiBackendRow{"JACK", createJackBackend},
};
} // namespace

std::span<const MidiBackendRow> midiBackendRows() {
    return kRows;
}

std::vector<std::unique_ptr<MidiBackend>> createMidiBackends() {
    std::vector<std::unique_ptr<MidiBackend>> backends;
    backends.reserve(kRows.size());
    for (const auto& row : kRows)
        backends.push_back(row.create());
    return backends;
}

} // namespace velmora
