// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

#include <optional>
#include <stop_token>

namespace velmora::burner {

/// A file of the sectors without a name, which goes with its descriptor.
class BurnSpool {
public:
    BurnSpool();
    ~BurnSpool();
    BurnSpool(const BurnSpool&) = delete;
    BurnSpool& operator=(const BurnSpool&) = delete;
    [[nodiscard]] int descriptor() const { return fd_; }

private:
    int fd_ = -1;
};

/// Fills the spool, which is what the drive is fed with. What went wrong, if anything did.
[[nodiscard]] std::optional<BurnOutcome> cache(const CdTracks& tracks, const BurnSpool& spool,
                                               BurnEvents& events, const std::stop_token& cancel);

} // namespace velmora::burner
