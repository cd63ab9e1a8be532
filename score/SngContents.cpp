// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/SngContents.h"

#include "sound/SetupState.h"

#include <algorithm>

namespace velmora {

SngContents sngContents(const Score& score, const SetupState& setup) {
    std::array<std::size_t, kUsedChannels> last{};
    for (int channel = 0; channel < kUsedChannels; ++channel)
        last[static_cast<std::size_t>(channel)] =
            static_cast<std::size_t>(std::max(score.lastFilledPosition(channel, score.NumNotes), 0));
    // Rows end one index after the last note, where an effect of that note stands, or with the array.
    const std::size_t effectEnd =
        std::min(*std::ranges::max_element(last) + 2, static_cast<std::size_t>(score.Volume.positions()));

    SngContents contents{.rows = {},
                         .instruments = score.ChannelInstrument,
                         .tempo = score.Tempo,
                         .meter = {setup.TxBeats, setup.TxtMeter, setup.NoteX}};
    for (std::size_t layer = 0; layer < kSngLayers.size(); ++layer) {
        const SngLayer& of = kSngLayers[layer];
        const bool isNotes = layer < 2;
        for (int row = 0; row < of.fileRows; ++row) {
            const auto index = static_cast<std::size_t>(row);
            contents.rows[layer][index] = (score.*of.grid)
                                              .row(row)
                                              .first(isNotes ? last[index] + 1 : effectEnd)
                                              .subspan(static_cast<std::size_t>(of.first));
        }
    }
    return contents;
}

std::string serialize(const SngContents& contents, const std::stop_token& stop) {
    const auto& cells = contents.rows[0];
    const auto& codes = contents.rows[1];
    const auto& chords = contents.rows[2];
    SngWriter out(100 * chords[0].size());
    for (std::size_t channel = 0; channel < kUsedChannels && !stop.stop_requested(); ++channel) {
        out.row(cells[channel]);
        out.row(codes[channel]);
    }
    out.row(std::span(contents.instruments).first(kUsedChannels));
    out.line(kPolyphonicsKeyword);
    for (std::size_t row = 0; row < kPolyphonicsRows; ++row)
        out.row(chords[row]);
    for (std::size_t section = 0; section < kEffectSections.size(); ++section) {
        out.line(kEffectSections[section].keyword);
        for (std::size_t channel = 0; channel < kUsedChannels && !stop.stop_requested(); ++channel)
            out.row(contents.rows[3 + section][channel]);
    }
    writeKeyLines(out, contents.tempo, contents.meter);
    return out.take();
}

} // namespace velmora
