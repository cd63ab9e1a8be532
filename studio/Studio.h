// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/MediaDevices.h"
#include "studio/MusicSession.h"
#include "studio/RecordingSession.h"
#include "studio/SessionState.h"

#include <filesystem>
#include <functional>

namespace velmora {

/// The Recording Studio without its windows: what there is one of.
class Studio {
public:
    /// @param loop what waits are spent in: the mix itself where that is virtual
    Studio(Mix& mix, MessageLoop& loop, SessionPlayer& player, const Manners& manners,
           const ProgramFolders& folders, std::function<std::filesystem::path()> soundFont)
        : media(mix, loop, std::move(soundFont))
        , music(state, media, loop)
        , session(state, media, music, player, manners, folders, loop) {}

    SessionState state;
    MediaDevices media;
    MusicSession music;
    RecordingSession session;
};

} // namespace velmora
