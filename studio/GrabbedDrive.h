// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnLibrary.h"
#include "studio/cAudio.h"

#include <string>
#include <vector>

namespace velmora::burner {

/// A drive that is ours until this ends.
class GrabbedDrive {
public:
    explicit GrabbedDrive(const std::string& address);
    ~GrabbedDrive();
    GrabbedDrive(const GrabbedDrive&) = delete;
    GrabbedDrive& operator=(const GrabbedDrive&) = delete;

    [[nodiscard]] bool isOurs() const { return info_ != nullptr; }
    [[nodiscard]] burn_drive* drive() const { return info_->drive; }

private:
    burn_drive_info* info_ = nullptr;
};

/// What lies in it.
[[nodiscard]] Disc discIn(burn_drive* drive);
/// That it can write at what lies in it, KB/s, the fastest first.
[[nodiscard]] std::vector<int> speedsOf(burn_drive* drive);
/// What is said where it isn't ours.
[[nodiscard]] std::string cantBeReached(const CdDrive& drive);

} // namespace velmora::burner
