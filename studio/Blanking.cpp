// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Blanking.h"

#include "studio/GrabbedDrive.h"

#include <algorithm>
#include <thread>

namespace velmora::burner {

std::string blank(const CdDrive& drive, BurnEvents& events) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return cantBeReached(drive);
    const GrabbedDrive grabbed(drive.address);
    if (!grabbed.isOurs())
        return cantBeReached(drive);
    if (discIn(grabbed.drive()).state != DiscState::Rewritable)
        return "The disc in " + drive.name + " can't be made blank.";
    complaints();
    constexpr int kFast = 1;
    library().burn_disc_erase(grabbed.drive(), kFast);
    burn_progress progress{};
    double shown = 0;
    while (library().burn_drive_get_status(grabbed.drive(), &progress) != BURN_DRIVE_IDLE) {
        if (progress.sectors > 0)
            shown = std::max(shown,
                             std::clamp(static_cast<double>(progress.sector) / progress.sectors, 0.0, 1.0));
        events.Blanking(shown);
        std::this_thread::sleep_for(kLook);
    }
    const std::vector<std::string> problems = complaints();
    if (library().burn_drive_wrote_well(grabbed.drive()) == 0)
        return "Making the disc in " + drive.name + " blank failed" +
               (problems.empty() ? "." : ": " + problems.back());
    events.Blanking(1);
    return {};
}

} // namespace velmora::burner
