// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"
#include "studio/DiscImage.h"
#include "studio/cAudio.h"
#include "tests/support/DiscFiles.h"
#include "tests/support/Environment.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <array>
#include <map>
#include <sstream>
#include <thread>

namespace velmora {

namespace {
constexpr const char* kName = "VELMORA Test Burner";

/// Writes down what burning tells, and checks that shares rise and that it is told on the thread that asked.
class ToldEvents : public BurnEvents {
public:
    void Blanking(double share) override { rise("blanking", share); }
    void StartCaching(std::size_t track) override { add("cache " + std::to_string(track)); }
    void CacheProgress(double track, double total) override { rise("caching", track, total); }
    void StartWriting(std::size_t track) override { add("write " + std::to_string(track)); }
    void WriteProgress(double track, double total) override {
        rise("writing", track, total);
        if (onWriting)
            onWriting(total);
    }
    void ClosingTrack() override { add("close track"); }
    void ClosingSession() override { add("close session"); }
    void Comparing(double share) override {
        rise("comparing", share);
        if (onComparing)
            onComparing();
    }
    void Finished() override { add("finished"); }

    /// Another burning begins.
    void begin() {
        told.clear();
        last.clear();
        track_ = 0;
    }

    std::vector<std::string> told;
    std::map<std::string, double> last; ///< of the shares of the whole
    std::function<void(double)> onWriting;
    std::function<void()> onComparing;

private:
    void add(std::string text) {
        EXPECT_EQ(std::this_thread::get_id(), asker_);
        track_ = 0;
        told.push_back(std::move(text));
    }
    void rise(const std::string& what, double share) { rise(what, track_, share); }
    void rise(const std::string& what, double track, double total) {
        EXPECT_EQ(std::this_thread::get_id(), asker_);
        EXPECT_GE(track, track_);
        EXPECT_GE(total, last[what]);
        EXPECT_LE(total, 1);
        track_ = track;
        last[what] = total;
        if (told.empty() || told.back() != what)
            told.push_back(what);
    }

    std::thread::id asker_ = std::this_thread::get_id();
    double track_ = 0;
};

/// A drive that the real library talks to: its commands are answered by the module that is preloaded.
class BurnerTest : public testing::Test {
protected:
    BurnerTest() {
        environment_.set("VELMORA_FAKE_BURNER", at("").string());
        setUp("medium cdrw\n");
    }
    void setUp(const std::string& drive) const { writeFile(at("drive"), drive); }
    [[nodiscard]] std::filesystem::path at(const std::string& name) const {
        return std::filesystem::path(home_.path().toStdString()) / name;
    }
    /// The burner that the library finds.
    CdDrive drive() {
        const std::vector<CdDrive> drives = audio_.drives();
        EXPECT_EQ(drives.size(), 2U);
        return drives.front();
    }
    CdTracks twoTracks() {
        const auto first = noise(588 * 400 + 17, 1);
        const auto second = noise(100, 2);
        sectors_ = filledUp(first, 401) + filledUp(second, 300);
        return tracksOf({writeWav(at("Für Elise.wav"), first), writeWav(at("two.wav"), second)});
    }
    BurnOutcome burn(const std::stop_token& cancel = {}) {
        events_.begin();
        return audio_.burn(drive(), twoTracks(), {}, events_, cancel);
    }
    [[nodiscard]] bool wrote() const { return std::filesystem::exists(at("disc")); }
    /// How many commands of that number came.
    [[nodiscard]] int commands(const std::string& number) const {
        std::istringstream lines(readFile(at("commands")));
        int count = 0;
        for (std::string line; std::getline(lines, line);)
            count += line.starts_with(number + " ") ? 1 : 0;
        return count;
    }
    /// The texts before the first track, by kind and track.
    [[nodiscard]] std::map<std::pair<int, int>, std::string> texts() const {
        const std::string symbols = readFile(at("text"));
        std::string packs; // of six bits each
        for (std::size_t i = 0; i + 4 <= symbols.size(); i += 4) {
            unsigned four = 0;
            for (std::size_t j = 0; j < 4; ++j)
                four = (four << 6U) | (static_cast<unsigned char>(symbols[i + j]) & 0x3fU);
            for (const unsigned shift : {16U, 8U, 0U})
                packs += static_cast<char>(four >> shift);
        }
        std::map<std::pair<int, int>, std::string> all;
        std::map<int, std::string> running;
        int lastNumber = -1;
        for (std::size_t i = 0; i + 18 <= packs.size(); i += 18) {
            const int number = static_cast<unsigned char>(packs[i + 2]);
            if (number <= lastNumber)
                break; // the packs are written over and over
            lastNumber = number;
            running[static_cast<unsigned char>(packs[i])] += packs.substr(i + 4, 12);
        }
        for (const auto& [kind, text] : running) {
            std::istringstream parts(text);
            int track = 0;
            for (std::string part; track < 3 && std::getline(parts, part, '\0'); ++track)
                all[{kind, track}] = part;
        }
        return all;
    }

    QTemporaryDir home_;
    Environment environment_;
    cAudio audio_;
    ToldEvents events_;
    std::string sectors_;
};
} // namespace

TEST_F(BurnerTest, ADriveIsListedWithItsSpeedsAndTheImageBehindIt) {
    const std::vector<CdDrive> drives = audio_.drives();
    ASSERT_EQ(drives.size(), 2U);
    EXPECT_EQ(drives[0].name, kName);
    EXPECT_EQ(drives[0].address, "/dev/sr0");
    EXPECT_THAT(drives[0].speedTexts(),
                testing::ElementsAre("Max.", "7056 KB/s (40x)", "2822 KB/s (16x)", "706 KB/s (4x)"));
    EXPECT_TRUE(drives[1].isImage);
}

TEST_F(BurnerTest, ADriveThatOnlyReadsIsNoBurner) {
    setUp("medium cdr\nreader yes\n");
    EXPECT_EQ(audio_.drives().size(), 1U);
    setUp("absent yes\n");
    EXPECT_EQ(audio_.drives().size(), 1U);
}

TEST_F(BurnerTest, TwoTracksAreWrittenByteForByteAndReadBack) {
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::Finished) << outcome.detail;
    EXPECT_EQ(readFile(at("disc")), sectors_);
    EXPECT_EQ(readFile(at("toc")), "0\n401\nout 701\n");
    EXPECT_THAT(events_.told,
                testing::ElementsAre("cache 0", "caching", "cache 1", "caching", "write 0", "writing",
                                     "write 1", "writing", "close session", "comparing", "finished"));
    for (const char* what : {"caching", "writing", "comparing"})
        EXPECT_EQ(events_.last[what], 1) << what;
    std::int64_t readBack = 0;
    std::istringstream lines(readFile(at("commands")));
    for (std::string line; std::getline(lines, line);)
        readBack += line.starts_with("be ") ? 1 : 0;
    EXPECT_GE(readBack, 701 / 32); // a drive hands over 64 KB at most
    EXPECT_EQ(commands("5b"), 0) << "no track is closed by itself";
}

TEST_F(BurnerTest, WhatADriveIsOnlyAskedForDoesntStopIt) {
    for (const char* flaw : {"fail_address yes", "fail_mode yes"}) {
        setUp(std::string("medium cdr\n") + flaw + "\n");
        for (const char* file : {"toc", "disc"})
            std::filesystem::remove(at(file));
        const BurnOutcome outcome = burn();
        EXPECT_EQ(outcome.code, BurnCode::Finished) << flaw << ": " << outcome.detail;
        EXPECT_EQ(readFile(at("disc")), sectors_);
    }
}

TEST_F(BurnerTest, TheSessionIsToldOfWhileTheDriveCloses) {
    setUp("medium cdr\nslow_sync 500\nfail_sync yes\n");
    EXPECT_EQ(burn().code, BurnCode::Cache);
    EXPECT_EQ(events_.told.back(), "close session");
    EXPECT_EQ(events_.last["writing"], 1);
}

TEST_F(BurnerTest, ADiscWithoutItsTracksWasNotClosed) {
    setUp("medium cdr\nlose_toc yes\n");
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::ClosingSession);
    EXPECT_THAT(outcome.detail, testing::HasSubstr(kName));
    EXPECT_THAT(events_.told, testing::Not(testing::Contains("finished")));
}

TEST_F(BurnerTest, TitlesStandInTheTextOfTheDisc) {
    EXPECT_EQ(burn().code, BurnCode::Finished);
    const auto all = texts();
    EXPECT_EQ(all.at({0x80, 0}), "Audio CD");
    EXPECT_EQ(all.at({0x80, 1}), "F\xfcr Elise");
    EXPECT_EQ(all.at({0x80, 2}), "two");
}

TEST_F(BurnerTest, ADriveWithoutTextIsGivenNone) {
    setUp("medium cdr\nno_text yes\n");
    EXPECT_EQ(burn().code, BurnCode::Finished);
    EXPECT_FALSE(std::filesystem::exists(at("text")));
    EXPECT_EQ(readFile(at("disc")), sectors_);
}

TEST_F(BurnerTest, AWrittenDiscIsMadeBlankAndWrittenAnew) {
    writeFile(at("toc"), "0\nout 500\n");
    writeFile(at("disc"), "old");
    const CdDrive burner = drive();
    EXPECT_EQ(audio_.disc(burner).state, DiscState::Rewritable);
    EXPECT_EQ(burn().code, BurnCode::NotEmpty);
    EXPECT_EQ(readFile(at("disc")), "old");
    EXPECT_EQ(audio_.blank(burner, events_), "");
    EXPECT_EQ(events_.last["blanking"], 1);
    EXPECT_EQ(audio_.disc(burner).state, DiscState::Blank);
    EXPECT_EQ(burn().code, BurnCode::Finished);
    EXPECT_EQ(readFile(at("disc")), sectors_);
}

TEST_F(BurnerTest, ABlankingThatFailsIsTold) {
    setUp("medium cdrw\nfail_blank yes\n");
    writeFile(at("toc"), "0\nout 500\n");
    EXPECT_THAT(audio_.blank(drive(), events_), testing::HasSubstr(kName));
    EXPECT_EQ(audio_.disc(drive()).state, DiscState::Rewritable);
}

TEST_F(BurnerTest, ADiscThatIsWrittenForGoodIsLeftAlone) {
    setUp("medium cdr\n");
    writeFile(at("toc"), "0\nout 500\n");
    const CdDrive burner = drive();
    EXPECT_EQ(audio_.disc(burner).state, DiscState::Full);
    EXPECT_NE(audio_.blank(burner, events_), "");
    EXPECT_EQ(burn().code, BurnCode::NotEmpty);
    EXPECT_EQ(commands("a1") + commands("2a"), 0);
}

TEST_F(BurnerTest, WhatDoesntFitIsFoundBeforeAnythingIsWritten) {
    setUp("medium cdr\ncapacity 700\n");
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::InvalidMedium);
    EXPECT_THAT(outcome.detail, testing::HasSubstr("holds 00:09:25"));
    EXPECT_FALSE(wrote());
    EXPECT_TRUE(events_.told.empty());
    setUp("medium cdr\ncapacity 701\n");
    EXPECT_EQ(burn().code, BurnCode::Finished);
}

TEST_F(BurnerTest, AnAbsentAndAnUnsuitableDiscAreTold) {
    setUp("medium none\n");
    EXPECT_EQ(audio_.disc(drive()).state, DiscState::Absent);
    const BurnOutcome absent = burn();
    EXPECT_EQ(absent.code, BurnCode::InvalidMedium);
    EXPECT_EQ(absent.detail, std::string("There is no disc in ") + kName + ".");
    setUp("medium dvd\n");
    EXPECT_EQ(audio_.disc(drive()).state, DiscState::Unsuitable);
    EXPECT_EQ(burn().code, BurnCode::InvalidMedium);
    EXPECT_FALSE(wrote());
}

TEST_F(BurnerTest, ADriveThatIsGoneIsTold) {
    const CdDrive burner = drive();
    setUp("absent yes\n");
    EXPECT_EQ(audio_.disc(burner).state, DiscState::NoDrive);
    EXPECT_FALSE(audio_.setSpeed(burner, 1));
    EXPECT_THAT(audio_.blank(burner, events_), testing::HasSubstr(kName));
    const BurnOutcome outcome = audio_.burn(burner, twoTracks(), {}, events_);
    EXPECT_EQ(outcome.code, BurnCode::ParametersRefused);
    EXPECT_THAT(outcome.detail, testing::HasSubstr(kName));
}

TEST_F(BurnerTest, ADriveThatVanishesWhileItWritesEndsIt) {
    setUp("medium cdr\nvanish 300\n");
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::WriteError);
    EXPECT_FALSE(outcome.cancelled);
    EXPECT_THAT(outcome.detail, testing::HasSubstr(kName));
}

TEST_F(BurnerTest, WhatFailsHasItsCodeAndTheDrivesWords) {
    struct Row {
        const char* flaw;
        BurnCode code;
        const char* words;
    };
    constexpr std::array kRows{
        Row{"fail_write 300", BurnCode::WriteError, "Write error"},
        Row{"fail_cue yes", BurnCode::ParametersRefused, "SEND CUE SHEET"},
        Row{"fail_sync yes", BurnCode::Cache, "synchronize"},
    };
    for (const Row& row : kRows) {
        setUp(std::string("medium cdr\n") + row.flaw + "\n");
        const BurnOutcome outcome = burn();
        EXPECT_EQ(outcome.code, row.code) << row.flaw;
        EXPECT_THAT(outcome.detail, testing::HasSubstr(row.words));
        EXPECT_FALSE(std::filesystem::exists(at("toc")));
    }
}

TEST_F(BurnerTest, AWrongBitOnTheDiscIsNoSuccess) {
    setUp("medium cdr\nwrong 450\n");
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::WriteError);
    EXPECT_THAT(outcome.detail, testing::HasSubstr("track 2 at 00:00:"));
    EXPECT_THAT(events_.told, testing::Not(testing::Contains("finished")));
}

TEST_F(BurnerTest, ASectorThatCantBeReadIsNoSuccess) {
    setUp("medium cdr\nunreadable 10\n");
    const BurnOutcome outcome = burn();
    EXPECT_EQ(outcome.code, BurnCode::WriteError);
    EXPECT_THAT(outcome.detail, testing::HasSubstr("can't read track 1"));
}

TEST_F(BurnerTest, ADriveThatReadsSomeFramesOffIsUnderstood) {
    setUp("medium cdr\nshift 667\n");
    EXPECT_EQ(burn().code, BurnCode::Finished);
}

TEST_F(BurnerTest, BurningIsCancelledWhileItWrites) {
    setUp("medium cdr\nslow 40\n");
    std::stop_source cancel;
    events_.onWriting = [&cancel](double total) {
        if (total > 0.1)
            cancel.request_stop();
    };
    const BurnOutcome outcome = burn(cancel.get_token());
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_LT(events_.last["writing"], 1);
    EXPECT_FALSE(std::filesystem::exists(at("toc")));
    EXPECT_THAT(events_.told, testing::Not(testing::Contains("comparing")));
}

TEST_F(BurnerTest, ComparingIsCancelled) {
    std::stop_source cancel;
    events_.onComparing = [&cancel] { cancel.request_stop(); };
    const BurnOutcome outcome = burn(cancel.get_token());
    EXPECT_TRUE(outcome.cancelled || outcome.code == BurnCode::Finished);
    cancel = {};
    cancel.request_stop();
    const auto before = commands("2a");
    events_.begin();
    EXPECT_EQ(audio_.blank(drive(), events_), "");
    EXPECT_TRUE(burn(cancel.get_token()).cancelled);
    EXPECT_EQ(commands("2a"), before); // cancelled before it began
}

TEST_F(BurnerTest, ASpeedOfTheListIsSetAndOthersAreRefused) {
    const CdDrive burner = drive();
    EXPECT_TRUE(audio_.setSpeed(burner, 0));
    EXPECT_TRUE(audio_.setSpeed(burner, 2));
    EXPECT_FALSE(audio_.setSpeed(burner, 4));
    const int before = commands("bb");
    EXPECT_EQ(burn().code, BurnCode::Finished);
    EXPECT_GT(commands("bb"), before);
    setUp("medium cdrw\nspeeds 706\n"); // another disc, which bears less
    EXPECT_FALSE(audio_.setSpeed(burner, 2));
}

TEST_F(BurnerTest, TheCallersLoopIsServedMeanwhile) {
    int argc = 1;
    std::array<char*, 2> argv{const_cast<char*>("test"), nullptr};
    const QCoreApplication application(argc, argv.data());
    QtMessageLoop loop;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
    timer.start(10);
    cAudio audio(&loop);
    const std::vector<CdDrive> drives = audio.drives();
    EXPECT_EQ(audio.burn(drives.front(), twoTracks(), {}, events_).code, BurnCode::Finished);
    EXPECT_GT(ticks, 50); // it takes seconds
}

} // namespace velmora
