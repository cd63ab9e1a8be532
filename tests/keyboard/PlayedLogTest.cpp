// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedLog.h"

#include "base/Files.h"
#include "base/VirtualLoop.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

using namespace velmora;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
constexpr double kWall = 1'700'000'000;

struct PlayedLogTest : testing::Test {
    /// A new run of the program on the same folder.
    struct Run {
        explicit Run(const std::filesystem::path& file, std::atomic<double>& wall)
            : log(file, loop, [&wall] { return wall.load(); })
            , wall_(wall) {
            log.onTrouble([this](const std::string& words) {
                told = words;
                ++tellings;
            });
        }
        void pass(double seconds) {
            loop.block(seconds);
            wall_ = wall_ + seconds;
        }
        void play(int note, double seconds) {
            log.struck(0, note, 90, 7, loop.now());
            pass(seconds);
            log.ended(0, note, loop.now());
        }

        VirtualLoop loop;
        std::string told;
        std::atomic<int> tellings = 0;
        PlayedLog log;
        std::atomic<double>& wall_;
    };

    QTemporaryDir home;
    std::filesystem::path file = std::filesystem::path(home.path().toStdString()) / "deep" / "played";
    std::atomic<double> wall = kWall;
};

auto pitch(int note) {
    return Field(&PlayedNote::note, note);
}
} // namespace

TEST_F(PlayedLogTest, WhatIsPlayedIsThereAtOnce) {
    Run run(file, wall);
    run.pass(3);
    run.play(60, 0.5);
    run.log.struck(2, 64, 80, 9, run.loop.now());
    run.pass(1);
    EXPECT_THAT(run.log.notes(),
                ElementsAre(PlayedNote{3, 3.5, 60, 90, 0, 7}, PlayedNote{3.5, 4.5, 64, 80, 2, 9}));
    EXPECT_EQ(run.log.start(), 0);
}

TEST_F(PlayedLogTest, WhatAnEarlierRunPlayedIsThereAsFarBackAsItWas) {
    {
        Run run(file, wall);
        run.play(60, 0.5);
        run.log.struck(0, 64, 90, 7, run.loop.now());
        run.pass(0.25);
        run.log.pedal(0, true, run.loop.now()); // the last that is known of it
    }
    wall = wall + 100;
    Run next(file, wall);
    const auto notes = next.log.notes();
    ASSERT_THAT(notes, ElementsAre(pitch(60), pitch(64)));
    EXPECT_NEAR(notes[0].onset, -100.75, 1e-5);
    EXPECT_NEAR(notes[0].end, -100.25, 1e-5);
    EXPECT_NEAR(notes[1].end, -100, 1e-5);
    next.play(67, 1);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(60), pitch(64), pitch(67)));
}

TEST_F(PlayedLogTest, WhatIsOlderThanTenMinutesIsGone) {
    {
        Run run(file, wall);
        run.play(60, 0.5);
        run.pass(400);
        run.play(62, 0.5);
    }
    Run next(file, wall);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(60), pitch(62)));
    next.pass(300);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(62)));
    next.play(64, 1);
    next.pass(599);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(64)));
    next.pass(2);
    EXPECT_THAT(next.log.notes(), IsEmpty());
}

TEST_F(PlayedLogTest, AClockThatWasSetBackBringsNoNotesFromTheFuture) {
    {
        Run run(file, wall);
        run.play(60, 0.5);
    }
    wall = kWall - 3600;
    Run next(file, wall);
    EXPECT_THAT(next.log.notes(), IsEmpty());
    next.play(62, 1);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(62)));
}

TEST_F(PlayedLogTest, AJournalThatHasGrownIsWrittenAnewWithTheLastTenMinutes) {
    {
        Run run(file, wall);
        for (int part = 0; part < 50; ++part) {
            for (int i = 0; i < 1000; ++i)
                run.play(60 + i % 12, 0.02);
            run.log.finish();
        }
        run.log.finish();
    }
    EXPECT_LT(std::filesystem::file_size(file), 1'100'000U) << "1,600,000 bytes were written";
    Run next(file, wall);
    EXPECT_GT(next.log.notes().size(), 29'000U);
}

TEST_F(PlayedLogTest, DamageCostsWhatItHits) {
    {
        Run run(file, wall);
        for (int i = 0; i < 10; ++i)
            run.play(60 + i, 0.5);
    }
    std::string bytes = *readWholeFile(file);
    bytes[40] ^= 1;                   // in the third event
    bytes.erase(bytes.size() - 5);    // the last is torn
    bytes.insert(100, "some junk\n"); // so is one that junk stands in
    std::ofstream(file, std::ios::binary) << bytes;
    Run next(file, wall);
    EXPECT_THAT(next.log.notes(), SizeIs(8)) << "two strikes were hit, and an end";
}

TEST_F(PlayedLogTest, AFolderThatCannotBeWrittenIsToldOnceAndPlayingGoesOn) {
    std::ofstream(file.parent_path()) << "a file where the folder would be";
    Run run(file, wall);
    for (int i = 0; i < 3; ++i) {
        run.play(60 + i, 0.5);
        run.log.finish();
    }
    EXPECT_EQ(run.tellings, 1);
    EXPECT_THAT(run.told, HasSubstr("What you play is kept in memory alone, since writing " + file.string()));
    EXPECT_THAT(run.log.notes(), SizeIs(3));
    // Once it can be written everything comes there.
    std::filesystem::remove(file.parent_path());
    run.play(70, 0.5);
    run.log.finish();
    Run next(file, wall);
    EXPECT_THAT(next.log.notes(), ElementsAre(pitch(60), pitch(61), pitch(62), pitch(70)));
}

TEST_F(PlayedLogTest, AFullDiskIsToldOnce) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no such device here";
    Run run("/dev/full", wall);
    run.play(60, 0.5);
    run.log.finish();
    run.play(62, 0.5);
    run.log.finish();
    EXPECT_EQ(run.tellings, 1);
    EXPECT_THAT(run.told, HasSubstr("No space left on device"));
    EXPECT_THAT(run.log.notes(), SizeIs(2));
}

TEST_F(PlayedLogTest, AFolderInItsPlaceIsTold) {
    std::filesystem::create_directories(file);
    Run run(file, wall);
    EXPECT_THAT(run.log.notes(), IsEmpty());
    run.play(60, 0.5);
    run.log.finish();
    EXPECT_EQ(run.tellings, 1);
}

TEST_F(PlayedLogTest, NothingIsTouchedBeforeThereIsSomethingToKeep) {
    { const Run run(file, wall); }
    EXPECT_FALSE(std::filesystem::exists(file.parent_path()));
}

TEST_F(PlayedLogTest, AStrikeIsOnTheDiskWithinASecond) {
    Run run(file, wall);
    run.play(60, 0.5);
    const auto start = std::chrono::steady_clock::now();
    while (parseJournal(readWholeFile(file).value_or("")).size() < 2 &&
           std::chrono::steady_clock::now() - start < std::chrono::seconds(20))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took.count(), VELMORA_SANITIZED ? 20 : 1) << "seconds";
}

TEST_F(PlayedLogTest, TheMetronomeThatRanThroughAPhraseIsKnown) {
    Run run(file, wall);
    EXPECT_FALSE(run.log.beatsDuring(1, 2));
    run.pass(1);
    run.log.metronome(1, 0.5, 3);
    ASSERT_TRUE(run.log.beatsDuring(1.2, 9));
    EXPECT_EQ(run.log.beatsDuring(1.2, 9)->interval, 0.5);
    EXPECT_EQ(run.log.beatsDuring(1.2, 9)->perMeasure, 3);
    run.pass(4);
    run.log.metronome(1, 0, 3); // it stops now, whatever it says of its start
    EXPECT_TRUE(run.log.beatsDuring(1.2, 4));
    EXPECT_FALSE(run.log.beatsDuring(0.5, 4)) << "it began later";
    EXPECT_FALSE(run.log.beatsDuring(2, 6)) << "it stopped meanwhile";
    run.pass(2);
    run.log.metronome(7, 0.25, 4);
    run.pass(1);
    run.log.metronome(8, 0.3, 4);
    EXPECT_EQ(run.log.beatsDuring(7.5, 8)->interval, 0.25);
    EXPECT_EQ(run.log.beatsDuring(8.5, 80)->interval, 0.3);
}

TEST_F(PlayedLogTest, WhatIsHeldStaysHoweverLongItGoesOn) {
    Run run(file, wall);
    run.play(50, 1);
    run.log.holdFrom(run.loop.now());
    for (int minute = 0; minute < 20; ++minute) {
        run.play(60 + minute, 1);
        run.pass(59);
    }
    EXPECT_THAT(run.log.notes(), SizeIs(10)) << "those of the last ten minutes";
    const double last = run.loop.now();
    run.play(90, 1);
    EXPECT_THAT(run.log.between(1, last - 60), SizeIs(20));
    EXPECT_THAT(run.log.between(1, last), SizeIs(21));
    run.log.holdFrom(last);
    run.pass(61);
    run.play(91, 1);
    EXPECT_THAT(run.log.between(0, last), SizeIs(testing::Le(12U)));
}

TEST(PlayedJournalTest, EveryEventComesBack) {
    std::mt19937 random(5);
    std::vector<PlayedEvent> events;
    for (int i = 0; i < 500; ++i)
        events.push_back(
            {static_cast<PlayedEvent::Kind>(i % 5), static_cast<std::uint8_t>(random() % 16),
             static_cast<std::uint8_t>(random() % 128), static_cast<std::uint8_t>(random() % 128),
             static_cast<std::uint8_t>(random() % 128), static_cast<double>(random() % 1000) - 500});
    EXPECT_EQ(parseJournal(journalBytes(events)), events);
    EXPECT_THAT(parseJournal(""), IsEmpty());
    EXPECT_THAT(parseJournal(std::string(100'000, '\xA5')), IsEmpty());
}
