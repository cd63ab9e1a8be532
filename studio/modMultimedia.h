// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

class MediaDevices;
class SettingsStore;

/// The media commands that the program sends, by name. Texts are "Success" or what went wrong; numbers are -1
/// where a command failed.
namespace modMultimedia {

inline constexpr const char* kCapture = "capture";
inline constexpr const char* kMusic = "audiomp3";
inline constexpr const char* kSuccess = "Success";
inline constexpr const char* kMusicType = "MPEGVideo";

std::string openMedia(MediaDevices& media, const std::string& path, const std::string& type,
                      const std::string& alias, long parent = 0);
/// @param from below or equal 0 is 0, @param to at or below 0 is the length
std::string play(MediaDevices& media, const std::string& alias, std::int32_t from, std::int32_t to);
std::string close(MediaDevices& media, const std::string& alias);
std::string pause(MediaDevices& media, const std::string& alias);
std::string resume(MediaDevices& media, const std::string& alias);
std::string stop(MediaDevices& media, const std::string& alias);
std::string saveCapture(MediaDevices& media, const std::string& path);
std::string stopCapture(MediaDevices& media);
std::string closeCapture(MediaDevices& media);
std::string closeAll(MediaDevices& media);

[[nodiscard]] std::int32_t lengthInFrames(MediaDevices& media, const std::string& alias);
[[nodiscard]] std::int32_t lengthInMilliseconds(MediaDevices& media, const std::string& alias);
[[nodiscard]] std::int32_t position(MediaDevices& media, const std::string& alias);
[[nodiscard]] std::int32_t framesPerSecond(MediaDevices& media, const std::string& alias);
/// @param length in frames; asked for, and kept in it, if 0
[[nodiscard]] bool isAtEnd(MediaDevices& media, const std::string& alias, std::int32_t& length);

/// The driver that plays a type of media, "None" where none is named; 255 bytes at the most.
[[nodiscard]] std::string ReadMciDriver(const SettingsStore& store, std::string_view name);
void WriteMciDriver(SettingsStore& store, std::string_view name, std::string_view value);
/// Has music files play through the driver that plays them: as the Recording Studio loads.
void chooseMusicDriver(SettingsStore& store);

} // namespace modMultimedia

} // namespace velmora
