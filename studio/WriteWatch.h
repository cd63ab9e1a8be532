// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnLibrary.h"
#include "studio/cAudio.h"

#include <cstddef>

namespace velmora::burner {

/// Tells of a drive that writes, until it has done so.
class WriteWatch {
public:
    WriteWatch(const CdTracks& tracks, BurnEvents& events) : tracks_(tracks), events_(events) {}

    void look(burn_drive_status status, const burn_progress& at);
    /// All is written.
    void end();
    /// What it was closing when it was last seen, or WriteError: nothing.
    [[nodiscard]] BurnCode atWork() const { return atWork_; }

private:
    /// @param track no earlier one than before; those between were too quick to be seen
    void goTo(std::size_t track);
    void showWriting(const burn_progress& at);
    void show(double share);
    void closing(BurnCode what);

    const CdTracks& tracks_;
    BurnEvents& events_;
    bool begun_ = false;
    std::size_t track_ = 0;
    double shown_ = 0;
    double total_ = 0;
    BurnCode atWork_ = BurnCode::WriteError;
};

} // namespace velmora::burner
