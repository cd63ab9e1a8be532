// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

class MessageLoop;
class RecoveryFile;
struct Workspace;

/// Says when the score is looked at for the recovery file. It compares what is in memory, so that no edit
/// has to say that it happened, and stands aside while a step of playing is due.
class RecoveryWatch {
public:
    /// Seconds from one look to the next: what a crash can cost.
    static constexpr double kPeriod = 10;
    /// `kPeriod`, or the seconds in VELMORA_RECOVERY_PERIOD, which may be less: 0.1 at least.
    [[nodiscard]] static double periodOfUser();

    /// @param period seconds
    RecoveryWatch(RecoveryFile& file, const Workspace& workspace, const MessageLoop& loop,
                  double period = kPeriod)
        : file_(file)
        , workspace_(workspace)
        , loop_(loop)
        , period_(period) {}

    /// Seconds until a step is due that a look needs at least.
    static constexpr double kLeastTime = 0.005;

    /// Looks at the score if there is time. @return seconds until the next call
    double look();

private:
    [[nodiscard]] double waitForTime() const;

    RecoveryFile& file_;
    const Workspace& workspace_;
    const MessageLoop& loop_;
    double period_;
    double cost_ = 0; ///< seconds of the dearest look
};

} // namespace velmora
