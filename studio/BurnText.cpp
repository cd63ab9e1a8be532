// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/BurnText.h"

#include <QList>
#include <QString>

#include <algorithm>

namespace velmora {

std::string toLatin1(std::string_view text) {
    const QString characters = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    std::string latin;
    for (const char32_t c : characters.toUcs4())
        latin += c < 0x100 ? static_cast<char>(c) : '?';
    return latin;
}

DiscText discText(const CdTracks& tracks, std::size_t longest) {
    const auto cut = [longest](std::string_view text) {
        std::string latin = toLatin1(text);
        std::ranges::replace_if(
            latin, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
        return latin.substr(0, longest);
    };
    DiscText text;
    for (const CdTrack& track : tracks.list()) {
        text.tracks.push_back({cut(track.title), cut(track.sound.artist)});
        text.hasPerformers = text.hasPerformers || !track.sound.artist.empty();
    }
    text.title = text.tracks.size() == 1 ? text.tracks.front().title : "Audio CD";
    if (!text.tracks.empty() && std::ranges::all_of(text.tracks, [&text](const DiscText::Track& track) {
            return track.performer == text.tracks.front().performer;
        }))
        text.performer = text.tracks.front().performer;
    return text;
}

} // namespace velmora
