// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

class QString;

namespace velmora {

/// Compares a page with what is kept of it as tests/golden/NAME.txt and NAME.png: the list of its marks,
/// which must be the same to the letter, then the picture, by its bytes first and by its pixels where another
/// version of a library made other bytes of it.
///
/// An empty string if it is like it; otherwise what is wrong, the first line that differs or the path of the
/// picture of the difference. If golden pictures are being made anew, stores both instead, and says on the
/// standard output what has changed.
/// @param png the picture as a file's bytes
[[nodiscard]] QString checkEngraved(const QString& name, std::string_view list, std::string_view png,
                                    int scale);

/// An empty string if no page of that name is kept. If golden pictures are being made anew, it is kept no
/// more.
[[nodiscard]] QString checkNotKept(const QString& name);

/// Compares a text alone, or stores it; @p path from the sources' own folder.
[[nodiscard]] QString checkKeptText(const QString& path, std::string_view text);

} // namespace velmora
