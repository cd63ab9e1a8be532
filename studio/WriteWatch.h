// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnLibrary.h"
#include "studio/cAudio.h"

#include <cstddef>

namespace velmora::burner {

/// Tells of a drive that writes all tracks at once, until it has done so.
class WriteWatch {
public:
    WriteWatch(const CdTracks& tracks, BurnEvents& events) : tracks_(tracks), events_(events) {}

    void look(const burn_progress& at);
    /// All is written, and the session closed.
    void end();

private:
    /// @param track no earlier one than before; those between were too quick to be seen
    void goTo(std::size_t track);
    void show(double share);
    void closeSession();

    const CdTracks& tracks_;
    BurnEvents& events_;
    bool begun_ = false;
    std::size_t track_ = 0;
    double shown_ = 0;
    double total_ = 0;
    bool isClosing_ = false;
};

} // namespace velmora::burner
