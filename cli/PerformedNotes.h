// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "studio/MusicPlayer.h"
#include "studio/SessionPlayer.h"

#include <memory>

namespace velmora::cli {

/// The notes of a recording without a window: a performance that sounds in the mix by itself, on the same
/// frames each time, and rings out to its end.
class PerformedNotes : public SessionPlayer {
public:
    /// @param player none where there are no notes
    PerformedNotes(std::unique_ptr<MusicPlayer> player, MessageLoop& loop);

    End playNotes(bool showPosition, const std::function<void(double)>& progress) override;
    void stopNotes() override;

private:
    std::unique_ptr<MusicPlayer> player_;
    MessageLoop& loop_;
};

} // namespace velmora::cli
