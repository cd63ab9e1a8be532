// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "recording/CDWriter.h"
#include "recording/CdTrackList.h"
#include "shell/DialogDriver.h"
#include "shell/MessageHand.h"
#include "studio/Encoder.h"
#include "studio/TestWaves.h"

#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
namespace fs = std::filesystem;

/// A burner that shows what it does, and writes nothing.
class ShownAudio : public cAudio {
public:
    std::vector<CdDrive> drives() override {
        return {{.name = "Optical drive 1", .address = "/dev/x", .isImage = false, .speeds = {7056, 706}},
                {.name = std::string(kImageDrive), .address = {}, .isImage = true, .speeds = {}}};
    }
    Disc disc(const CdDrive& /*drive*/) override { return {DiscState::Blank, kDiscOf80Minutes}; }
    bool setSpeed(const CdDrive& /*drive*/, std::size_t /*row*/) override { return true; }
    BurnOutcome burn(const CdDrive& /*drive*/, const CdTracks& /*tracks*/, const fs::path& /*file*/,
                     BurnEvents& events, const std::stop_token& /*cancel*/) override {
        during(events);
        return {BurnCode::Finished};
    }

    std::function<void(BurnEvents&)> during;
};

/// The window as it comes up, in one skin.
class Shown {
public:
    Shown(int skin, int scale) : program_(skin), skin_(skin), scale_(scale) {
        auto audio = std::make_unique<ShownAudio>();
        audio_ = audio.get();
        window_ = std::make_unique<CDWriter>(program_.desk(), nullptr, std::move(audio));
        hand_.in<QWidget>([](QWidget& box) { pressIn(box, "yes"); });
        window_->open();
        QCoreApplication::processEvents(); // it looks for drives
    }

    void addTracks() {
        add(silence("Morning Walk.wav", 192));
        add(silence("Harbour Lights.wav", 245));
        add(encoded("Two Rivers.mp3", 20));
        add(silence("A Window on the Bay, as it is seen from the harbour.wav", 163));
        auto& list = *static_cast<CdTrackList*>(window_->findChild<QWidget*>("lstTracks"));
        list.setCurrentItem(list.topLevelItem(1));
    }
    void expect(const char* kind) {
        const QString name = QStringLiteral("%1-skin%2-x%3").arg(kind).arg(skin_).arg(scale_);
        const QString wrong = checkAgainstGolden(name, pictureOf(*window_, scale_), scale_);
        EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    }
    void expectBurning(const char* kind) {
        audio_->during = [this, kind](BurnEvents& events) {
            events.StartWriting(1);
            events.WriteProgress(0.4, 0.33);
            QCoreApplication::processEvents();
            expect(kind);
            hand_.in<QWidget>([](QWidget& box) {
                EXPECT_EQ(wordsOf(box), "Finished.");
                pressIn(box, "ok");
            });
        };
        window_->cmdBurn_Click();
    }

private:
    [[nodiscard]] fs::path at(const char* name) const {
        return fs::path(program_.home.path().toStdString()) / name;
    }
    /// As long as the file is, whatever its header tells; the file system keeps no zero of it.
    [[nodiscard]] fs::path silence(const char* name, std::uintmax_t seconds) const {
        constexpr int kRate = 16'000;
        const fs::path file = at(name);
        const std::string header = testwaves::wavOf({}, kRate, 1);
        std::ofstream(file, std::ios::binary) << header;
        fs::resize_file(file, header.size() + seconds * kRate * 2);
        return file;
    }
    [[nodiscard]] fs::path encoded(const char* name, std::uintmax_t seconds) const {
        EXPECT_EQ(encode({.wav = silence("take.wav", seconds), .mp3 = at(name)}).error, "");
        return at(name);
    }
    void add(const fs::path& file) {
        program_.dialogs.answers.push_back({file.string(), 1});
        window_->cmdAddFile_Click();
    }

    GoldenProgram program_;
    int skin_;
    int scale_;
    DialogDriver hand_;
    ShownAudio* audio_ = nullptr;
    std::unique_ptr<CDWriter> window_;
};
} // namespace

class CDWriterInEverySkin : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, CDWriterInEverySkin, testing::Range(1, 9));

TEST_P(CDWriterInEverySkin, TheBurningOfADiscLooksAsKept) {
    Shown shown(GetParam(), 1);
    shown.addTracks();
    shown.expectBurning("CDWriter-burning");
}

TEST(CDWriterGoldenTest, TheWindowWithoutTracksLooksAsKept) {
    for (const int skin : {1, 6})
        Shown(skin, 1).expect("CDWriter");
}

TEST(CDWriterGoldenTest, TheTracksOfADiscLookAsKept) {
    for (const int skin : {1, 6, 7}) {
        Shown shown(skin, 1);
        shown.addTracks();
        shown.expect("CDWriter-tracks");
    }
}

TEST(CDWriterGoldenTest, TheWindowOnALargeScreenLooksAsKept) {
    for (const int skin : {1, 4}) {
        Shown shown(skin, 2);
        shown.addTracks();
        shown.expectBurning("CDWriter-burning");
    }
}
