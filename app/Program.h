// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "base/QtMessageLoop.h"
#include "base/SettingsStore.h"
#include "composition/RecoveryFile.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/QtFileDialogs.h"
#include "shell/frmskins.h"
#include "shell/openerF.h"
#include "sound/LiveSound.h"

#include <filesystem>
#include <memory>
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
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Shows the start window. The event loop does the rest.
    void start();

private:
    struct Composing;

    void prepareComposing();
    void startComposing();
    void composingIsSeen();
    [[nodiscard]] bool offerRecovery();
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
    std::unique_ptr<Composing> composing_;
};

} // namespace velmora
