// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace velmora {

class clsDialog;
class SettingsStore;
struct Workspace;

/// Opening and saving the score, with the dialogs that ask for names.
class ScoreFiles {
public:
    /// @param songs the folder that the dialogs begin in
    ScoreFiles(Workspace& workspace, clsDialog& dialogs, SettingsStore& settings,
               std::filesystem::path songs);

    /// How a command ended. Words are for the user, and blank where there is nothing to say.
    struct Outcome {
        bool done = false; ///< opened, saved; false after a cancel, with nothing to save, and after a failure
        std::string words;
        bool opened = false; ///< another score stands there now
    };

    std::function<void(bool busy)> onBusy; ///< a file is being read or written, and no longer
    std::function<void()> onOpened;        ///< a score has been read, and nobody has been told yet

    /// Asks for a score and opens it.
    Outcome open();
    /// Opens a score. What can't be read, or is no text, leaves the old score as it was.
    Outcome open(const std::filesystem::path& file);
    /// Asks for a name and saves the score, or as a MIDI file, as the chosen filter says. A score without
    /// notes asks nothing.
    Outcome saveAs();

private:
    [[nodiscard]] Outcome saveScore(const std::string& path);
    [[nodiscard]] Outcome exportMidi(const std::string& path);

    Workspace& workspace_;
    clsDialog& dialogs_;
    SettingsStore& settings_;
    std::filesystem::path folder_; ///< of the last file, for the next dialog
};

} // namespace velmora
