// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

struct KeyScheme;

// The keyboard scheme ".key": 44 lines, each the label of a key, in the order of the keys.

/// Any bytes will do; a byte order mark of UTF-8 is no part of the first line. Lines end with CR LF or LF and
/// are not trimmed; where the file is shorter, its last line is the label of all further keys. What isn't
/// UTF-8 is read as Windows-1252.
[[nodiscard]] KeyScheme parseKeyFile(std::string_view bytes);
/// What anyone typed or named as a label: itself as UTF-8, else read as Windows-1252.
[[nodiscard]] std::string textOfLabel(std::string_view bytes);
/// The labels without blanks at their ends, a line with CR LF each.
[[nodiscard]] std::string formatKeyFile(const KeyScheme& scheme);

/// Reads a file into the labels. Refused are UTF-16, what has a NUL, and what has a line that no label could
/// be, of more than 4096 bytes. @return why it can't be read, in a sentence that names it, the labels being
/// as they were; blank otherwise
[[nodiscard]] std::string OpenKeyScheme(const std::filesystem::path& path, KeyScheme& scheme);
/// Replaces the file, or makes it. @return the reason in words if it failed, the old file being untouched
[[nodiscard]] std::string SaveKeyScheme(const std::filesystem::path& path, const KeyScheme& scheme);

/// What a dialog or a command line named, as the save command takes it: trimmed, without a character 0 at its
/// end, and with ".key" where its last four characters aren't that in either case.
[[nodiscard]] std::string keyFileName(std::string name);

} // namespace velmora
