// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryWatch.h"

#include "WorkspaceFixture.h"
#include "base/VirtualLoop.h"
#include "composition/RecoveryFile.h"
#include "tests/support/Environment.h"

using namespace velmora;

namespace {
/// A virtual clock that says what it is told to wait for.
class DueLoop : public VirtualLoop {
public:
    [[nodiscard]] std::optional<double> nextDue() const override { return due; }
    std::optional<double> due;
};

class RecoveryWatchTest : public WorkspaceFixture {
protected:
    RecoveryWatchTest() {
        putNotes(score(), 0, 60, 7);
        loop.block(100);
    }
    /// Whether this call looked: it has found the change.
    bool looks(double& wait) {
        score().Tempo = static_cast<std::int16_t>(score().Tempo + 1);
        wait = watch.look();
        file.finish();
        const auto kept = file.keep(score(), workspace().setup);
        file.finish();
        return kept == RecoveryFile::Kept::Unchanged;
    }
    bool looks() {
        double wait = 0;
        return looks(wait);
    }

    DueLoop loop;
    RecoveryFile file{folders.recovery()};
    RecoveryWatch watch{file, workspace(), loop};
};
} // namespace

TEST_F(RecoveryWatchTest, AChangeIsOnDiskAfterTenSecondsAtMost) {
    double wait = 0;
    EXPECT_TRUE(looks(wait));
    EXPECT_EQ(wait, 10);
}

TEST_F(RecoveryWatchTest, AShorterPeriodIsKept) {
    RecoveryWatch often(file, workspace(), loop, 0.5);
    EXPECT_EQ(often.look(), 0.5);
    EXPECT_LE(often.look(), 0.5) << "while it is written, too";
}

TEST_F(RecoveryWatchTest, TheUserMayAskForAShorterPeriodAndForNothingElse) {
    Environment environment;
    environment.unset("VELMORA_RECOVERY_PERIOD");
    EXPECT_EQ(RecoveryWatch::periodOfUser(), 10);
    for (const auto& [text, seconds] : {std::pair("0.5", 0.5),
                                        {"3", 3},
                                        {"0.001", 0.1},
                                        {"60", 10},
                                        {"0", 10},
                                        {"-1", 10},
                                        {"nan", 10},
                                        {"often", 10},
                                        {"", 10}}) {
        environment.set("VELMORA_RECOVERY_PERIOD", text);
        EXPECT_EQ(RecoveryWatch::periodOfUser(), seconds) << text;
    }
}

TEST_F(RecoveryWatchTest, NothingIsDoneWhileAStepIsDue) {
    workspace().play.Playing = true;
    loop.due = loop.now() + 0.001;
    double wait = 0;
    EXPECT_FALSE(looks(wait));
    EXPECT_GT(wait, 0.001) << "the next call comes after the step";
    EXPECT_LT(wait, 0.01);
}

TEST_F(RecoveryWatchTest, BetweenTwoStepsThereIsTime) {
    workspace().play.Playing = true;
    loop.due = loop.now() + 0.138;
    EXPECT_TRUE(looks());
}

TEST_F(RecoveryWatchTest, TheWorkOfAStepIsNotInterrupted) {
    workspace().play.Playing = true;
    double wait = 0;
    EXPECT_FALSE(looks(wait));
    EXPECT_LT(wait, 0.01);
    workspace().play.Playing = false;
    EXPECT_TRUE(looks());
}

TEST_F(RecoveryWatchTest, AWaitThatIsHeldUpHoldsNothingUpHere) {
    workspace().play.Playing = true;
    loop.due = loop.now() - 1;
    EXPECT_TRUE(looks());
}

TEST_F(RecoveryWatchTest, ALookThatIsDearWantsMoreTime) {
    /// A clock on which each reading takes its time.
    class SlowLoop : public DueLoop {
    public:
        [[nodiscard]] double now() const override { return now_ += 0.01; }
        mutable double now_ = 0;
    } slow;
    RecoveryWatch watching(file, workspace(), slow);
    EXPECT_EQ(watching.look(), RecoveryWatch::kPeriod); // it cost 0.01
    slow.due = slow.now_ + 0.03;
    EXPECT_LT(watching.look(), 1);
    slow.due = slow.now_ + 0.06;
    file.finish();
    EXPECT_EQ(watching.look(), RecoveryWatch::kPeriod);
}
