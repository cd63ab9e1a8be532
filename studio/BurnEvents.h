// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>

namespace velmora {

/// What burning tells of. Shares run from 0 to 1 and never fall, of a track or of the whole.
class BurnEvents {
public:
    virtual ~BurnEvents() = default;
    virtual void Blanking(double /*share*/) {}
    virtual void StartCaching(std::size_t /*track*/) {}
    virtual void CacheProgress(double /*trackShare*/, double /*totalShare*/) {}
    virtual void StartWriting(std::size_t /*track*/) {}
    virtual void WriteProgress(double /*trackShare*/, double /*totalShare*/) {}
    virtual void ClosingTrack() {} ///< by itself, which no drive does that writes all of them at once
    virtual void ClosingSession() {}
    virtual void Comparing(double /*share*/) {} ///< every sector is read back
    virtual void Finished() {}
};

} // namespace velmora
