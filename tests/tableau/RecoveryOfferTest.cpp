// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/RecoveryOffer.h"

#include "composition/RecoveryFile.h"
#include "form1Fixture.h"

#include <chrono>

using namespace velmora;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

namespace {
class RecoveryOfferTest : public form1Fixture {
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
    void answer(const char* which) {
        shown(); // which takes the events that wait
        driver.in<QWidget>([this, which](QWidget& box) {
            question = wordsOf(box).toStdString();
            pressIn(box, which);
        });
    }
    bool offer(const fs::path& named = {}) { return offerRecovery(skins, window(), recovery, named); }
    std::vector<LeftScore> left() { return RecoveryFile(folders.recovery()).left(); }

    RecoveryFile recovery{folders.recovery()};
    std::string question;
};
} // namespace

TEST_F(RecoveryOfferTest, NothingIsAskedWithoutACrash) {
    EXPECT_FALSE(offer());
    EXPECT_EQ(question, "");
}

TEST_F(RecoveryOfferTest, YesShowsTheScoreUnderItsOldName) {
    leave("/home/me/tune.sng", 6, 1);
    answer("yes");
    EXPECT_TRUE(offer());
    EXPECT_THAT(question, AllOf(HasSubstr("The score \"tune.sng\" can be brought back"),
                                Not(HasSubstr("is not opened"))));
    EXPECT_EQ(window().windowTitle(), "Velmora - tune.sng");
    EXPECT_EQ(score().SongEnd, 12);
    EXPECT_EQ(score().usedChannels(), std::vector{4});
    EXPECT_THAT(left(), SizeIs(1)) << "until this run has written its own";
}

TEST_F(RecoveryOfferTest, NoRemovesIt) {
    leave("", 6, 1);
    answer("no");
    EXPECT_FALSE(offer());
    EXPECT_THAT(question, HasSubstr("A score that was never saved"));
    EXPECT_EQ(score().SongEnd, 0);
    EXPECT_THAT(left(), SizeIs(0));
}

TEST_F(RecoveryOfferTest, EscKeepsItForTheNextStart) {
    leave("", 6, 1);
    shown();
    driver.in<QWidget>([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_FALSE(offer());
    putNotes(score(), 0, 60, 3);
    recovery.keep(score(), workspace().setup);
    recovery.finish();
    EXPECT_THAT(left(), SizeIs(2)) << "and this run doesn't write over it";
}

TEST_F(RecoveryOfferTest, AScoreThatWasNamedIsSaidToStayShut) {
    leave("/home/me/tune.sng", 6, 1);
    answer("yes");
    EXPECT_TRUE(offer("/home/me/other.sng"));
    EXPECT_THAT(question, HasSubstr("\"other.sng\" is not opened"));
}

TEST_F(RecoveryOfferTest, TheNamedScoreItselfIsNoOtherOne) {
    leave("/home/me/tune.sng", 6, 1);
    answer("yes");
    EXPECT_TRUE(offer("/home/me/tune.sng"));
    EXPECT_THAT(question, Not(HasSubstr("is not opened")));
}

TEST_F(RecoveryOfferTest, AfterANoTheOlderOneIsOffered) {
    leave("/old.sng", 6, 2);
    leave("/new.sng", 3, 1);
    shown();
    driver.in<QWidget>([this](QWidget& box) {
        EXPECT_THAT(wordsOf(box).toStdString(), HasSubstr("new.sng"));
        driver.in<QWidget>([this](QWidget& next) {
            question = wordsOf(next).toStdString();
            pressIn(next, "yes");
        });
        pressIn(box, "no");
    });
    EXPECT_TRUE(offer());
    EXPECT_THAT(question, HasSubstr("old.sng"));
    EXPECT_EQ(score().SongEnd, 12);
    EXPECT_THAT(left(), SizeIs(1));
}
