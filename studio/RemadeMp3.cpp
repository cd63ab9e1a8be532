// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/RemadeMp3.h"

#include "studio/Id3Tag.h"
#include "studio/SoundReader.h"

#include <algorithm>
#include <utility>

namespace velmora {

RemadeMp3 remadeMp3(const std::filesystem::path& file, const SoundInfo& info, EncodeSettings wanted,
                    RemadeSound remade) {
    const auto failed = [&](std::string why) { return RemadeMp3{.settings = {}, .error = std::move(why)}; };
    CoverPicture cover = readCover(wanted.cover);
    if (!cover.error.empty())
        return failed(std::move(cover.error));
    const OpenedBytes opened = openBytes(file);
    if (!opened.bytes)
        return failed("Reading \"" + file.string() + "\" failed: " + opened.error + ".");
    KeptTags tags = keptTags(*opened.bytes, {wanted.title, wanted.artist, std::move(cover.bytes)}, remade);
    if (!tags.error.empty())
        return failed("Reading \"" + file.string() + "\" failed: " + tags.error + ".");

    RemadeMp3 made{.settings = std::move(wanted)};
    EncodeSettings& settings = made.settings;
    settings.format = {};
    const int rate = encodedFormat(settings, info.rate, info.channels).rate;
    // At another rate the same bitrate would sound otherwise.
    if (rate == info.rate && std::ranges::find(kMp3Bitrates, info.bitrate) != kMp3Bitrates.end())
        settings.bitrate = info.bitrate;
    // All that is told stands in the tags now, also that there is nothing to tell.
    settings.title.clear();
    settings.artist.clear();
    settings.cover.clear();
    settings.front = std::move(tags.front);
    settings.behind = std::move(tags.behind);
    made.note = "MP3 can't be changed as it is: it was encoded again, at " +
                std::to_string(bitrateAt(rate, settings.bitrate)) + " kbit/s";
    return made;
}

} // namespace velmora
