// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/HandOver.h"
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
#include "sound/MidiInputs.h"

#include <deque>
#include <filesystem>
#include <memory>
#include <vector>

namespace velmora {

/// The windowed program: everything that there is one of, in the order in which it comes up. The start window
/// first, with no more than it needs; the sound beside it once it has been painted; the rest when the user
/// starts.
class Program {
public:
    /// @param backends made before other threads ran, as are
    /// @param inputs
    /// @param score opened after the start; blank for none
    /// @param socket where second starts hand over what they were to open; blank for nowhere
    Program(std::vector<std::unique_ptr<MidiBackend>> backends,
            std::vector<std::unique_ptr<MidiInputBackend>> inputs, std::filesystem::path score,
            std::filesystem::path socket);
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
    void offerRecovery();
    void watchScoreIn(double seconds);
    void takeOver(const HandedOver& handed);
    void openWaiting();
    void end();

    std::vector<std::unique_ptr<MidiBackend>> backends_;
    std::deque<std::filesystem::path> waiting_; ///< scores to be opened, one after the other
    bool seen_ = false; ///< the composing window has been seen, and no score that a crash left is in question
    SettingsFile settings_;
    ProgramFolders folders_;
    RecoveryFile recovery_;
    frmskins skins_;
    ExToolTip tips_;
    openerF opener_;

    std::unique_ptr<LiveSound> sound_;
    MidiInputs inputs_;
    QtMessageLoop loop_;
    QtFileDialogs dialogs_;
    std::unique_ptr<Frmmenu> menu_;
    std::unique_ptr<Composing> composing_;
    std::unique_ptr<HandOverServer> handOver_; ///< until the program ends
};

} // namespace velmora
