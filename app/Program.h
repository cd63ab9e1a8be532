// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "base/QtMessageLoop.h"
#include "base/SettingsStore.h"
#include "composition/RecoveryFile.h"
#include "composition/RecoveryWatch.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "setup/frmsetup.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/HelpWindow.h"
#include "shell/QtFileDialogs.h"
#include "shell/frmskins.h"
#include "shell/openerF.h"
#include "sound/DeviceChooser.h"
#include "sound/LiveSound.h"
#include "tableau/form1.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// The windowed program: everything that there is one of, in the order in which it comes up. The start window
/// first, with no more than it needs; the sound beside it once it has been painted; the rest when the user
/// starts.
class Program {
public:
    /// @param backends made before other threads ran
    /// @param score opened after the start; blank for none
    Program(std::vector<std::unique_ptr<MidiBackend>> backends, std::filesystem::path score);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Shows the start window. The event loop does the rest.
    void start();

private:
    void prepareComposing();
    void startComposing();
    void openHelp(const QString& page);
    void openSetup(frmsetup::Focus focus);
    void pickInstrument(std::function<void(std::int16_t code)> picked);
    [[nodiscard]] SetupToolbar setupToolbar();
    [[nodiscard]] ComposingWindow composingWindow();
    void watchScoreIn(double seconds);
    void end();

    std::vector<std::unique_ptr<MidiBackend>> backends_;
    std::filesystem::path score_;
    SettingsFile settings_;
    ProgramFolders folders_;
    RecoveryFile recovery_;
    frmskins skins_;
    ExToolTip tips_;
    openerF opener_;

    std::unique_ptr<LiveSound> sound_;
    QtMessageLoop loop_;
    QtFileDialogs dialogs_;
    std::unique_ptr<Frmmenu> menu_;
    std::unique_ptr<DeviceChooser> devices_;
    std::unique_ptr<Workspace> workspace_;
    std::optional<RecoveryWatch> watch_;
    std::optional<Application> application_;
    std::unique_ptr<HelpWindow> help_;
    std::unique_ptr<form1> form1_;
    std::unique_ptr<frmsetup> frmsetup_; ///< once it was opened; it floats over `form1`, and goes before it
};

} // namespace velmora
