// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/RecordSettings.h"

#include "base/Settings.h"
#include "studio/SessionState.h"

#include <charconv>
#include <string>

namespace velmora {

namespace {
/// The index that a text holds, if it is one of that many.
std::size_t indexIn(const std::string& text, std::size_t count, std::size_t otherwise) {
    std::size_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    return error == std::errc() && stop == end && index < count ? index : otherwise;
}

std::size_t formatIn(const std::string& text) {
    for (std::size_t i = 0; i < kOfferedFormats; ++i)
        if (offeredFormat(i).text == text)
            return i;
    return indexIn(text, kOfferedFormats, kDefaultOffer);
}

const char* flag(bool on) {
    return on ? "1" : "0";
}
} // namespace

void loadChoices(SessionState& state, const SettingsStore& store) {
    using settings::read;
    state.Check2 = read(store, settings::autoencode) == "1";
    state.Check3 = read(store, settings::Delete_WAV) == "1";
    state.Check4 = read(store, settings::Show_note_position) == "1";
    state.Combo3 = indexIn(read(store, settings::MP3_quality), kEncoderQualities.size(), kDefaultQuality);
    state.Combo4 = indexIn(read(store, settings::MP3_bitrate), kMp3Bitrates.size(), kDefaultBitrate);
    state.cbxFormat = formatIn(read(store, settings::WAV_format));
}

void saveChoices(const SessionState& state, SettingsStore& store) {
    SettingsBatch batch(store);
    settings::save(batch, settings::autoencode, flag(state.Check2));
    settings::save(batch, settings::Delete_WAV, flag(state.Check3));
    settings::save(batch, settings::Show_note_position, flag(state.Check4));
    settings::save(batch, settings::MP3_quality, std::to_string(state.Combo3));
    settings::save(batch, settings::MP3_bitrate, std::to_string(state.Combo4));
    if (state.cbxFormat < kOfferedFormats)
        settings::save(batch, settings::WAV_format, offeredFormat(state.cbxFormat).text);
}

} // namespace velmora
