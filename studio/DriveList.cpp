// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DriveList.h"

#include "base/Text.h"
#include "studio/GrabbedDrive.h"

#include <algorithm>
#include <array>
#include <span>
#include <thread>

namespace velmora::burner {

namespace {
std::string nameOf(const burn_drive_info& info) {
    const std::string vendor(trimmed(info.vendor));
    const std::string product(trimmed(info.product));
    return vendor.empty() || product.empty() ? vendor + product : vendor + " " + product;
}

std::string addressOf(const burn_drive_info& info) {
    std::array<char, BURN_DRIVE_ADR_LEN> address{};
    return library().burn_drive_d_get_adr(info.drive, address.data()) > 0 ? address.data() : std::string();
}
} // namespace

std::vector<CdDrive> drives() {
    const std::lock_guard lock(oneAtATime());
    std::vector<CdDrive> all;
    if (!isThere())
        return all;
    burn_drive_info* infos = nullptr;
    unsigned count = 0;
    int scanned = 0;
    while ((scanned = library().burn_drive_scan(&infos, &count)) == 0)
        std::this_thread::sleep_for(kLook);
    if (scanned < 0 || !infos)
        return all;
    for (const burn_drive_info& info : std::span(infos, count))
        if (info.write_cdr || info.write_cdrw)
            all.push_back({.name = nameOf(info), .address = addressOf(info), .speeds = speedsOf(info.drive)});
    library().burn_drive_info_free(infos);
    complaints();
    for (CdDrive& drive : all) {
        const auto alike = [&drive](const CdDrive& other) { return other.name == drive.name; };
        if (drive.name.empty() || std::ranges::count_if(all, alike) > 1)
            drive.name += (drive.name.empty() ? "" : " ") + std::string("(") + drive.address + ")";
    }
    return all;
}

Disc disc(const CdDrive& drive) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return {DiscState::NoDrive};
    const GrabbedDrive grabbed(drive.address);
    const Disc found = grabbed.isOurs() ? discIn(grabbed.drive()) : Disc{DiscState::NoDrive};
    complaints();
    return found;
}

bool takesSpeed(const CdDrive& drive, int speed) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return false;
    const GrabbedDrive grabbed(drive.address);
    if (!grabbed.isOurs())
        return false;
    // Drives say nothing when they write at another speed than they were told to: their list must do.
    const std::vector<int> speeds = speedsOf(grabbed.drive());
    complaints();
    return std::ranges::find(speeds, speed) != speeds.end();
}

} // namespace velmora::burner
