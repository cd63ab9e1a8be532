// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// The folders a user's work stands in when nothing else is chosen. Nothing is made before it is asked for.
class ProgramFolders {
public:
    explicit ProgramFolders(std::filesystem::path home) : home_(std::move(home)) {}
    /// `$VELMORA_HOME`, else `velmora` in the user's XDG data folder.
    [[nodiscard]] static ProgramFolders ofUser();

    [[nodiscard]] const std::filesystem::path& home() const { return home_; }
    [[nodiscard]] std::filesystem::path songs() const { return home_ / "Songs"; }
    [[nodiscard]] std::filesystem::path media() const { return home_ / "media"; }
    [[nodiscard]] std::filesystem::path recovery() const { return home_ / "recovery"; }
    [[nodiscard]] std::filesystem::path takes() const { return home_ / "takes"; }
    /// The journal of what is played on the keyboard.
    [[nodiscard]] std::filesystem::path played() const { return home_ / "played"; }
    [[nodiscard]] std::filesystem::path undoFile() const { return songs() / "temp.sng"; }

    /// Each makes its folder and those above it where missing; false if it isn't there afterwards.
    bool makeHome() const;
    bool makeSongs() const;
    bool makeMedia() const;

private:
    std::filesystem::path home_;
};

/// `velmora/settings` in the user's XDG configuration folder.
[[nodiscard]] std::filesystem::path settingsPath();

/// Where data that came with the program may stand, best first: `$VELMORA_DATA`; the share folder beside the
/// executable's own; then for an executable of the build tree the two places in the sources that have such
/// data, for any other the configured folder.
[[nodiscard]] std::vector<std::filesystem::path> shippedDataFolders(const std::filesystem::path& executable);
/// The folder of that name in the first of these places, for the running executable, that has it.
[[nodiscard]] std::optional<std::filesystem::path> shippedFolder(std::string_view name);
[[nodiscard]] inline std::optional<std::filesystem::path> demosFolder() {
    return shippedFolder("demos");
}
/// The pages of help, which are Markdown.
[[nodiscard]] inline std::optional<std::filesystem::path> helpFolder() {
    return shippedFolder("help");
}

/// `$VELMORA_SOUNDFONT`, then where the distribution's packages put theirs, the best sounding first.
[[nodiscard]] std::vector<std::filesystem::path> soundFontCandidates();
/// The first of the candidates that is a file.
[[nodiscard]] std::optional<std::filesystem::path> findSoundFont();

} // namespace velmora
