// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// What playing asks of the Recording Studio.
class RecordingProgress {
public:
    virtual ~RecordingProgress() = default;

    [[nodiscard]] virtual bool showing() const { return false; }
    /// The share of the song played, 0 and up; past 1 the bar moves on but the percentage stays.
    virtual void showProgress(double /*ratio*/) {}
    virtual void clearProgress() {}
    /// Ends the recording that was started with the song.
    virtual void stopRecording() {}
};

} // namespace velmora
