// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Dialogs.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// The filters as Qt's file dialogs take them: one text a filter, in the same order and no two alike. The
/// last bracket of a text holds the patterns, each matching in either case; what stands before it is what
/// the user reads. A blank label reads as its pattern.
[[nodiscard]] QStringList nameFilters(std::span<const FileFilter> filters);

/// The extension that files of this filter get, with its point: that of its first pattern of the form
/// "*.ext"; blank if there is none.
[[nodiscard]] std::string extensionOf(const FileFilter& filter);

/// An extension as callers write it, "sng" or ".sng", with its point; blank stays blank.
[[nodiscard]] std::string withPoint(std::string_view extension);
/// The path with @p extension (".sng"), if its name has none. ".sng" alone is a name without an extension.
[[nodiscard]] std::string withExtensionIfNone(std::string path, std::string_view extension);

/// Where a file dialog opens, and on which name.
struct StartPlace {
    std::filesystem::path folder;
    std::string name; ///< blank: none is proposed
};

/// Takes a caller's start apart: a folder, or the path of a file in it. Something that does not exist counts
/// as a file if one of the filters' extensions ends it.
[[nodiscard]] StartPlace startPlace(std::string_view start, std::span<const FileFilter> filters);

/// The folder, made absolute, or the nearest parent that exists and that Qt can name; blank stands for the
/// current folder.
[[nodiscard]] QString nearestFolder(const std::filesystem::path& folder);

/// Bytes that need not be UTF-8 as a text, and back. Bytes that are no character travel in a private range
/// of Unicode, so that even an edited name keeps them.
[[nodiscard]] QString textOfBytes(std::string_view bytes);
[[nodiscard]] std::string bytesOfText(const QString& text);
/// Whether the bytes are plain UTF-8, outside that private range.
[[nodiscard]] bool isPlainText(std::string_view bytes);

} // namespace velmora
