// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/modMultimedia.h"

#include "base/SettingsStore.h"
#include "base/Text.h"
#include "studio/MediaDevices.h"

#include <charconv>
#include <cmath>

namespace velmora::modMultimedia {

namespace {

constexpr long kChildWindow = 0x40000000; ///< the style of a window within another
constexpr std::string_view kDriverSection = "MCI";
constexpr std::string_view kMusicDriver = "mciqtz.drv";
constexpr std::size_t kLongestDriver = 255;

std::int32_t numberOf(const MediaAnswer& answer) {
    std::int32_t number = -1;
    const std::string& text = answer.value;
    if (!answer.succeeded() ||
        std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc())
        return -1;
    return number;
}

/// A path as a command has it: only one with blanks at its ends needs quotes.
std::string spoken(const std::string& path) {
    return trimmed(path) == path ? path : "\"" + path + "\"";
}

bool countIn(MediaDevices& media, const std::string& alias, const char* unit) {
    return media.send("set " + alias + " time format " + unit).succeeded();
}

std::int32_t askLength(MediaDevices& media, const std::string& alias) {
    return numberOf(media.send("status " + alias + " length"));
}

} // namespace

std::string openMedia(MediaDevices& media, const std::string& path, const std::string& type,
                      const std::string& alias, long parent) {
    // A short form of the path is the path itself here: blanks do no harm.
    return media
        .send("open " + spoken(path) + " type " + type + " Alias " + alias + " parent " +
              std::to_string(parent) + " Style " + std::to_string(kChildWindow))
        .text();
}

std::string play(MediaDevices& media, const std::string& alias, std::int32_t from, std::int32_t to) {
    const std::int32_t begin = from <= 0 ? 0 : from;
    const std::int32_t end = to <= 0 ? lengthInFrames(media, alias) : to;
    return media.send("play " + alias + " from " + std::to_string(begin) + " to " + std::to_string(end))
        .text();
}

std::string close(MediaDevices& media, const std::string& alias) {
    return media.send("Close " + alias).text();
}

std::string pause(MediaDevices& media, const std::string& alias) {
    return media.send("Pause " + alias).text();
}

std::string resume(MediaDevices& media, const std::string& alias) {
    return media.send("Resume " + alias).text();
}

std::string stop(MediaDevices& media, const std::string& alias) {
    return media.send("Stop " + alias).text();
}

std::string saveCapture(MediaDevices& media, const std::string& path) {
    return media.send("Save capture " + spoken(path)).text();
}

std::string stopCapture(MediaDevices& media) {
    return media.send("stop capture").text();
}

std::string closeCapture(MediaDevices& media) {
    return media.send("close capture ").text();
}

std::string closeAll(MediaDevices& media) {
    return media.send("Close All").text();
}

std::int32_t lengthInFrames(MediaDevices& media, const std::string& alias) {
    return countIn(media, alias, "frames") ? askLength(media, alias) : -1;
}

std::int32_t lengthInMilliseconds(MediaDevices& media, const std::string& alias) {
    if (!countIn(media, alias, "ms"))
        return -1;
    const std::int32_t length = askLength(media, alias);
    return countIn(media, alias, "frames") ? length : -1;
}

std::int32_t position(MediaDevices& media, const std::string& alias) {
    return numberOf(media.send("status " + alias + " position"));
}

std::int32_t framesPerSecond(MediaDevices& media, const std::string& alias) {
    const std::int32_t frames = lengthInFrames(media, alias);
    const std::int32_t milliseconds = lengthInMilliseconds(media, alias);
    if (frames < 0 || milliseconds <= 0) // less than a millisecond tells no rate
        return -1;
    return static_cast<std::int32_t>(std::lround(frames / (milliseconds / 1000.0)));
}

bool isAtEnd(MediaDevices& media, const std::string& alias, std::int32_t& length) {
    if (length == 0)
        length = lengthInFrames(media, alias);
    const std::int32_t now = position(media, alias);
    return now >= 0 && (now == length || now == length - 1); // what has no position is nowhere
}

std::string ReadMciDriver(const SettingsStore& store, std::string_view name) {
    return store.GetSetting(kDriverSection, name, "None").substr(0, kLongestDriver);
}

void WriteMciDriver(SettingsStore& store, std::string_view name, std::string_view value) {
    store.SaveSetting(kDriverSection, name, value);
}

void chooseMusicDriver(SettingsStore& store) {
    if (ReadMciDriver(store, kMusicType) != kMusicDriver)
        WriteMciDriver(store, kMusicType, kMusicDriver);
}

} // namespace velmora::modMultimedia
