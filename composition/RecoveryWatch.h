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
    RecoveryWatch(RecoveryFile& file, const Workspace& workspace, const MessageLoop& loop)
        : file_(file)
        , workspace_(workspace)
        , loop_(loop) {}

    /// Seconds from one look to the next: what a crash can cost.
    static constexpr double kPeriod = 10;
    /// Seconds until a step is due that a look needs at least.
    static constexpr double kLeastTime = 0.005;

    /// Looks at the score if there is time. @return seconds until the next call
    double look();

private:
    [[nodiscard]] double waitForTime() const;

    RecoveryFile& file_;
    const Workspace& workspace_;
    const MessageLoop& loop_;
    double cost_ = 0; ///< seconds of the dearest look
};

} // namespace velmora
