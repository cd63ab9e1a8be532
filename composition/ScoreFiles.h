// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/RecentFiles.h"
#include "score/SngFile.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class clsDialog;
class SettingsStore;
struct Workspace;

/// Opening and saving the score, with the dialogs that ask for names. Whether what is unsaved may be lost has
/// been asked before: `unsavedQuestion` has the words.
class ScoreFiles {
public:
    /// @param songs the folder that the dialogs begin in
    ScoreFiles(Workspace& workspace, clsDialog& dialogs, SettingsStore& settings,
               std::filesystem::path songs);

    /// How a command ended. Words and note are for the user, and blank where there is nothing to say.
    struct Outcome {
        bool done = false; ///< opened, saved; false after a cancel, with nothing to save, and after a failure
        std::string words; ///< to be confirmed
        bool opened = false; ///< another score stands there now
        std::string note{};  ///< in passing
    };

    std::function<void(bool busy)> onBusy; ///< a file is being read or written, and no longer
    std::function<void()> onOpened;        ///< a score has been read, and nobody has been told yet

    /// Asks for a score and opens it.
    Outcome open();
    /// Opens a score. What can't be read, or is no text, leaves the old score as it was. In careful manners a
    /// file that saving would spoil, since the score doesn't hold all of it, does not become its own.
    Outcome open(const std::filesystem::path& file);
    /// Opens a piece that came with the program, in the form it has. It is nobody's file: saving asks for a
    /// name.
    Outcome openDemo(const std::filesystem::path& file, const std::string& title);
    /// Opens one of `recent`. One that is not there any more is said, and leaves the list.
    Outcome openRecent(const std::filesystem::path& file);
    /// The files that were opened or saved last, the newest first.
    [[nodiscard]] std::vector<std::filesystem::path> recent() const { return recent_.files(); }

    /// Writes the score to its own file, or asks for a name where it has none; in classic manners always.
    Outcome save();
    /// Asks for a name and saves the score, or as a MIDI file, as the chosen filter says. A score without
    /// notes asks nothing.
    Outcome saveAs();
    /// Whether there is anything that `save` would do.
    [[nodiscard]] bool canSave() const;

private:
    /// A file that was read, and by whom.
    struct Text {
        std::string bytes;
        SngReader reader = SngReader::OpenPoliFile;
        std::string problem{}; ///< in words; blank if it is one
    };
    [[nodiscard]] static Text read(const std::filesystem::path& file);
    /// @param own the score's own file from now on; blank for none
    Outcome take(const Text& text, const std::filesystem::path& file, const std::filesystem::path& own);
    [[nodiscard]] bool savesToOwnFile() const;
    [[nodiscard]] Outcome saveScore(const std::filesystem::path& file);
    [[nodiscard]] Outcome exportMidi(const std::string& path);

    Workspace& workspace_;
    clsDialog& dialogs_;
    SettingsStore& settings_;
    RecentFiles recent_;
    std::filesystem::path folder_; ///< of the last file, for the next dialog
};

/// Asks what becomes of a score that is in no file as it is now.
[[nodiscard]] std::string unsavedQuestion(const Workspace& workspace);

} // namespace velmora
