// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/GrabbedDrive.h"

#include <array>
#include <functional>
#include <set>

namespace velmora::burner {

GrabbedDrive::GrabbedDrive(const std::string& address) {
    std::string writable = address;
    if (library().burn_drive_scan_and_grab(&info_, writable.data(), 1) <= 0)
        info_ = nullptr;
    library().burn_drive_clear_whitelist();
}

GrabbedDrive::~GrabbedDrive() {
    if (!info_)
        return;
    library().burn_drive_release(info_->drive, 0);
    library().burn_drive_info_free(info_);
}

Disc discIn(burn_drive* drive) {
    constexpr int kCdR = 0x09;
    constexpr int kCdRw = 0x0a;
    int profile = 0;
    std::array<char, 80> name{};
    library().burn_disc_get_profile(drive, &profile, name.data());
    const burn_disc_status status = library().burn_disc_get_status(drive);
    if (status == BURN_DISC_EMPTY)
        return {DiscState::Absent};
    if (profile != kCdR && profile != kCdRw)
        return {DiscState::Unsuitable};
    Disc disc;
    if (status == BURN_DISC_BLANK)
        disc.state = DiscState::Blank;
    else if (status == BURN_DISC_APPENDABLE || status == BURN_DISC_FULL)
        disc.state = library().burn_disc_erasable(drive) != 0 ? DiscState::Rewritable : DiscState::Full;
    else
        return {DiscState::Unsuitable};
    int start = 0;
    int end = 0;
    library().burn_disc_read_atip(drive);
    if (library().burn_drive_get_start_end_lba(drive, &start, &end, 0) > 0 && end > 0)
        disc.sectors = end;
    return disc;
}

std::vector<int> speedsOf(burn_drive* drive) {
    burn_speed_descriptor* list = nullptr;
    std::set<int, std::greater<>> speeds;
    if (library().burn_drive_get_speedlist(drive, &list) > 0)
        for (const burn_speed_descriptor* row = list; row; row = row->next)
            if (row->write_speed > 0)
                speeds.insert(row->write_speed);
    if (list)
        library().burn_drive_free_speedlist(&list);
    return {speeds.begin(), speeds.end()};
}

std::string cantBeReached(const CdDrive& drive) {
    return "The drive " + drive.name + " can't be reached; is it still connected, and may you use it?";
}

} // namespace velmora::burner
