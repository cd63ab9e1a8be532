// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ReadBack.h"

#include "tests/support/DiscFiles.h"

#include <QTemporaryFile>

#include <unistd.h>

namespace velmora {

namespace {
using End = ReadBackOutcome::End;

/// A disc of noise as a drive reads it, off by some frames, and the file that it was written from.
class ReadBackTest : public testing::Test {
protected:
    static constexpr std::int64_t kSectors = 400;

    ReadBackTest() : sound_(bytesOf(noise(kSectors * kSectorFrames, 5))) {
        (void)file_.open();
        store();
    }
    void store() {
        const auto size = static_cast<ssize_t>(sound_.size());
        EXPECT_EQ(pwrite(file_.handle(), sound_.data(), sound_.size(), 0), size);
    }
    ReadBackOutcome compare(const std::vector<SectorRun>& runs = {{0, 0, kSectors}}) {
        const auto read = [this](std::int64_t sector, std::span<std::byte> to) {
            ++reads_;
            if (sector == unreadable_)
                return false;
            for (std::size_t i = 0; i < to.size(); ++i) {
                const std::int64_t from = sector * kSectorBytes + static_cast<std::int64_t>(i) + shift_ * 4;
                const bool isThere = from >= 0 && from < static_cast<std::int64_t>(sound_.size());
                to[i] =
                    isThere ? static_cast<std::byte>(sound_[static_cast<std::size_t>(from)]) : std::byte{0};
            }
            if (flaws_ > 0 && sector == 150 && flaws_-- > 0)
                to[77] ^= std::byte{1};
            return true;
        };
        return readBack(
            runs, file_.handle(), read, [this](double share) { shares_.push_back(share); },
            cancel_.get_token());
    }

    QTemporaryFile file_;
    std::string sound_;
    int shift_ = 0;
    std::int64_t unreadable_ = -1;
    int flaws_ = 0; ///< so many readings of sector 150 have a wrong bit
    int reads_ = 0;
    std::vector<double> shares_;
    std::stop_source cancel_;
};
} // namespace

TEST_F(ReadBackTest, WhatWasWrittenIsTheSame) {
    EXPECT_EQ(compare().end, End::Same);
    EXPECT_TRUE(std::ranges::is_sorted(shares_));
    EXPECT_EQ(shares_.back(), 1);
}

TEST_F(ReadBackTest, AConstantNumberOfFramesIsTheDrives) {
    for (const int shift : {1, -1, 33, -667, kMostShift, -kMostShift}) {
        shift_ = shift;
        shares_.clear();
        const ReadBackOutcome outcome = compare();
        EXPECT_EQ(outcome.end, End::Same) << shift;
        EXPECT_EQ(outcome.shift, shift);
        EXPECT_TRUE(std::ranges::is_sorted(shares_));
    }
}

TEST_F(ReadBackTest, SilenceAndRepetitionsDontHideTheShift) {
    std::fill_n(sound_.begin(), 160 * kSectorBytes, '\0');
    for (std::size_t i = 160 * kSectorBytes; i < 250 * kSectorBytes; ++i)
        sound_[i] = static_cast<char>(i / 4 % 50); // the same every 50 frames
    store();
    shift_ = 120;
    const ReadBackOutcome outcome = compare();
    EXPECT_EQ(outcome.end, End::Same);
    EXPECT_EQ(outcome.shift, 120);
}

TEST_F(ReadBackTest, AShiftBeyondAnyDrivesIsAnError) {
    shift_ = kMostShift + 1;
    EXPECT_EQ(compare().end, End::Different);
}

TEST_F(ReadBackTest, OneWrongBitIsFoundWithItsSector) {
    for (const int shift : {0, 12}) {
        shift_ = shift;
        flaws_ = 1000;
        const ReadBackOutcome outcome = compare();
        EXPECT_EQ(outcome.end, End::Different);
        EXPECT_EQ(outcome.sector, 150);
    }
}

TEST_F(ReadBackTest, ASlipOfTheReadingIsReadAgain) {
    flaws_ = 2;
    EXPECT_EQ(compare().end, End::Same);
}

TEST_F(ReadBackTest, WhatCantBeReadIsNoSuccess) {
    unreadable_ = 75;
    const ReadBackOutcome outcome = compare();
    EXPECT_EQ(outcome.end, End::Unreadable);
    EXPECT_EQ(outcome.sector, 75);
}

TEST_F(ReadBackTest, TracksWithGapsBetweenThemAreComparedEach) {
    sound_.insert(200 * kSectorBytes, std::string(150 * kSectorBytes, '\0')); // on the disc alone
    const ReadBackOutcome outcome = compare({{0, 0, 200}, {350, 200, 200}});
    EXPECT_EQ(outcome.end, End::Same);
}

TEST_F(ReadBackTest, ItEndsWhenItIsCancelled) {
    cancel_.request_stop();
    EXPECT_EQ(compare().end, End::Cancelled);
    EXPECT_EQ(reads_, 0);
}

} // namespace velmora
