// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryOffer.h"

#include "tests/composition/WorkspaceFixture.h"

#include <chrono>

using namespace velmora;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

namespace {
class RecoveryOfferTest : public WorkspaceFixture {
protected:
    /// A run that ended badly, some hours ago.
    void leave(const std::string& currentFile, int notes, int hours) {
        Workspace run(settings, folders);
        putNotes(run.score, 4, 60, notes);
        run.score.currentFile = currentFile;
        RecoveryFile crashed(folders.recovery());
        crashed.keep(run.score, run.setup);
        crashed.finish();
        for (const LeftScore& left : crashed.left())
            if (left.currentFile == currentFile)
                fs::last_write_time(left.file, fs::file_time_type::clock::now() - std::chrono::hours(hours));
    }
    /// The user answers so, one question after the other.
    std::optional<LeftScore> offer(const std::vector<RecoveryAnswer>& answers, const fs::path& named = {}) {
        return offerRecovery(recovery, named, [&](const std::string& question) {
            questions.push_back(question);
            return answers.at(questions.size() - 1);
        });
    }
    std::vector<LeftScore> left() { return RecoveryFile(folders.recovery()).left(); }

    RecoveryFile recovery{folders.recovery()};
    std::vector<std::string> questions;
};
} // namespace

TEST_F(RecoveryOfferTest, NothingIsAskedWithoutACrash) {
    EXPECT_FALSE(offer({}));
    EXPECT_THAT(questions, SizeIs(0));
}

TEST_F(RecoveryOfferTest, YesBringsTheScoreBackUnderItsOldName) {
    leave("/home/me/tune.sng", 6, 1);
    const auto wanted = offer({RecoveryAnswer::BringBack});
    ASSERT_TRUE(wanted);
    EXPECT_THAT(questions, ElementsAre(AllOf(HasSubstr("The score \"tune.sng\" can be brought back"),
                                             Not(HasSubstr("is not opened")))));
    restore(*wanted, workspace());
    EXPECT_EQ(score().currentFile, "/home/me/tune.sng");
    EXPECT_EQ(score().SongEnd, 12);
    EXPECT_EQ(score().usedChannels(), std::vector{4});
    EXPECT_THAT(left(), SizeIs(1)) << "until this run has written its own";
}

TEST_F(RecoveryOfferTest, NoRemovesIt) {
    leave("", 6, 1);
    EXPECT_FALSE(offer({RecoveryAnswer::Drop}));
    EXPECT_THAT(questions, ElementsAre(HasSubstr("A score that was never saved")));
    EXPECT_THAT(left(), SizeIs(0));
}

TEST_F(RecoveryOfferTest, WithoutAnAnswerItIsKeptForTheNextStart) {
    leave("", 6, 1);
    EXPECT_FALSE(offer({RecoveryAnswer::Later}));
    putNotes(score(), 0, 60, 3);
    recovery.keep(score(), workspace().setup);
    recovery.finish();
    EXPECT_THAT(left(), SizeIs(2)) << "and this run doesn't write over it";
}

TEST_F(RecoveryOfferTest, AScoreThatWasNamedIsSaidToStayShut) {
    leave("/home/me/tune.sng", 6, 1);
    EXPECT_TRUE(offer({RecoveryAnswer::BringBack}, "/home/me/other.sng"));
    EXPECT_THAT(questions, ElementsAre(HasSubstr("\"other.sng\" is not opened")));
}

TEST_F(RecoveryOfferTest, TheNamedScoreItselfIsNoOtherOne) {
    leave("/home/me/tune.sng", 6, 1);
    EXPECT_TRUE(offer({RecoveryAnswer::BringBack}, "/home/me/tune.sng"));
    EXPECT_THAT(questions, ElementsAre(Not(HasSubstr("is not opened"))));
}

TEST_F(RecoveryOfferTest, AfterANoTheOlderOneIsOffered) {
    leave("/old.sng", 6, 2);
    leave("/new.sng", 3, 1);
    const auto wanted = offer({RecoveryAnswer::Drop, RecoveryAnswer::BringBack});
    ASSERT_TRUE(wanted);
    EXPECT_THAT(questions, ElementsAre(HasSubstr("new.sng"), HasSubstr("old.sng")));
    EXPECT_EQ(wanted->currentFile, "/old.sng");
    EXPECT_THAT(left(), SizeIs(1));
}
