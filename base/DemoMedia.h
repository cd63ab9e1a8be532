// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The pieces that the lessons open, by their names in `ProgramFolders::media()` and among the demos.
inline constexpr std::array<std::string_view, 6> kDemoMedia{
    "104a.sng", "104b.sng", "333.mid", "301.sng", "welcome.sng", "invention.sng",
};

/// A piece that came with the program, to be opened.
struct Demo {
    std::filesystem::path file;
    std::string title;
};
/// The scores of a folder of demos, best first. One that has no title here goes by its name.
[[nodiscard]] std::vector<Demo> demosIn(const std::filesystem::path& folder);

/// Copies each piece that is not there yet from @p packed, the demos that came with the program, and makes
/// the folder where missing. Whatever has the name already stays as it is. Blank, or what first went wrong in
/// a sentence that names the file; the other pieces are placed all the same.
[[nodiscard]] std::string placeDemoMedia(const ProgramFolders& folders, const std::filesystem::path& packed);

/// Removes the pieces, then the folder if nothing else is in it. A piece that is no longer as it was packed
/// is the user's work and stays, unless nothing is in it.
void removeDemoMedia(const ProgramFolders& folders, const std::filesystem::path& packed);

} // namespace velmora
