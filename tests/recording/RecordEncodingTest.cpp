// SPDX-License-Identifier: GPL-2.0-or-later
// Encodings that meet others, or the end of the window.
#include "RecordFixture.h"
#include "recording/Record.h"
#include "recording/TakePanel.h"
#include "studio/Encoder.h"
#include "tableau/form1.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/sound/TestSound.h"
#include "tests/studio/TestSinks.h"
#include "tests/studio/TestWaves.h"
#include "tests/support/Environment.h"

#include <fstream>

using namespace velmora;
using testing::EndsWith;
using testing::HasSubstr;
using testsinks::bytesOf;

namespace {
namespace fs = std::filesystem;

class RecordEncodingTest : public RecordFixture {
protected:
    RecordEncodingTest() {
        environment_.set("VELMORA_SOUNDFONT", testsound::kSoundFont);
        store("Classic", "0"); // as `encode` has it: at the sound's own rate
        fs::create_directories(folder);
    }

    /// A file that takes a while, in the field of the window.
    void openWav() {
        std::ofstream(wav, std::ios::binary) << testwaves::wavOf(testwaves::noise(20 * 44'100, 3));
        opened();
        state().Text6 = wav.string();
        showState();
    }
    /// A hand that acts once, when a part of the next encoding is done.
    void inTheMiddle(std::function<void()> act) {
        auto& bar = control<QProgressBar>("L2");
        QObject::disconnect(hand_);
        hand_ = QObject::connect(&bar, &QProgressBar::valueChanged, &bar, [this, act](int value) {
            if (value < 200)
                return;
            QObject::disconnect(hand_);
            ASSERT_TRUE(state().isEncoding);
            act();
            acted = true;
        });
    }
    void answer(const char* button) {
        driver.in<QWidget>([button](QWidget& box) {
            EXPECT_EQ(wordsOf(box), "An MP3 file is being made. Stop that and close the Recording Studio?");
            pressIn(box, button);
        });
    }
    /// Whether it holds what encoding that file gives where nothing else goes on.
    bool isEncoded(const fs::path& file, const fs::path& from) {
        const EncodeJob job{.wav = from, .mp3 = place("alone.mp3")};
        EXPECT_EQ(encode(job).end, EncodeOutcome::End::Done);
        return fs::exists(file) && bytesOf(file) == bytesOf(job.mp3);
    }
    void expectNothingGoesOn() {
        EXPECT_FALSE(state().isEncoding || state().isLocked || state().isRecording);
        EXPECT_EQ(text("Label8"), "");
        EXPECT_EQ(text("Status"), "");
    }
    [[nodiscard]] fs::path place(const char* name) const { return folders.home() / name; }

    fs::path folder = place("sounds");
    fs::path wav = folder / "a long one.wav";
    fs::path mp3 = folder / "a long one.mp3";
    bool acted = false;

private:
    Environment environment_;
    QMetaObject::Connection hand_;
};
} // namespace

TEST_F(RecordEncodingTest, AnotherPressEndsItAndTheNextBeginsAnew) {
    openWav();
    for (const auto& press : {std::function([this] { click("Command20"); }),
                              std::function([this] { item("mnuEncode").trigger(); })}) {
        acted = false;
        inTheMiddle([&] {
            EXPECT_EQ(control<QAbstractButton>("Command20").text(), "Stop Encoding");
            press();
        });
        click("Command20");
        EXPECT_TRUE(acted);
        EXPECT_THAT(messages(), EndsWith("Encoding Cancelled \n"));
        EXPECT_FALSE(fs::exists(mp3));
        EXPECT_EQ(testsinks::filesIn(folder), 1U) << "nothing is left of it";
        expectNothingGoesOn();
    }
    click("Command20");
    EXPECT_TRUE(isEncoded(mp3, wav));
    EXPECT_EQ(state().Text6, mp3.string());
    expectNothingGoesOn();
}

TEST_F(RecordEncodingTest, ATakeIsEncodedBesideAnExportOfTheScore) {
    putNotes(score(), 0, 60, 300);
    form1 composing(desk());
    const auto* told = composing.findChild<QLabel*>("toolText");
    dialogs.answers.push_back({place("tune.mp3").string(), 1});
    item("mnuExportMp3").trigger();
    opened();
    state().Check3 = false; // the take stays
    click("Optsourcekeyboard");
    click("CmdrecordSNG");
    mix().advance(2 * 44'100);
    click("CmdStopRecording");
    EXPECT_EQ(told->text(), "") << "the export goes on";
    const fs::path take = state().InputPath;
    EXPECT_EQ(state().Text6, fs::path(take).replace_extension(".mp3").string());
    EXPECT_TRUE(isEncoded(state().Text6, take));
    expectNothingGoesOn();
    ASSERT_TRUE(
        QTest::qWaitFor([told] { return !told->text().isEmpty(); }, static_cast<int>(20'000 * kPatience)));
    EXPECT_THAT(told->text().toStdString(), HasSubstr("\"tune.mp3\" is written"));
    const std::string beside = bytesOf(place("tune.mp3"));
    dialogs.answers.push_back({place("tune2.mp3").string(), 1});
    item("mnuExportMp3").trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return fs::exists(place("tune2.mp3")); },
                                static_cast<int>(20'000 * kPatience)));
    EXPECT_TRUE(bytesOf(place("tune2.mp3")) == beside);
}

TEST_F(RecordEncodingTest, AFileIsEncodedWhileACopyOfItIsMadeLouder) {
    openWav();
    click("showTake");
    ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("louder"); }));
    click("louder");
    item("mnuEncode").trigger();
    EXPECT_TRUE(isEncoded(mp3, wav));
    const fs::path loud = folder / "a long one loud.wav";
    ASSERT_TRUE(QTest::qWaitFor([this] { return !control<TakePanel>("takePanel").isBusy(); },
                                static_cast<int>(20'000 * kPatience)));
    EXPECT_EQ(fs::file_size(loud), fs::file_size(wav));
    expectNothingGoesOn();
}

TEST_F(RecordEncodingTest, ClosingInTheMiddleAsksAndAYesEndsItCleanly) {
    openWav();
    std::ofstream(mp3) << "an old file";
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "yes"); }); // replace it
    inTheMiddle([this] {
        answer("yes");
        window().close();
        EXPECT_FALSE(window().isVisible());
    });
    click("Command20");
    EXPECT_TRUE(acted);
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(bytesOf(mp3), "an old file");
    EXPECT_TRUE(fs::exists(wav));
    EXPECT_EQ(testsinks::filesIn(folder), 2U) << "and nothing else is left";
    expectNothingGoesOn();
    opened();
    EXPECT_TRUE(isEnabled("Command20")) << "it comes up as if nothing had been";
}

TEST_F(RecordEncodingTest, ANoLetsItGoOnToItsEnd) {
    openWav();
    inTheMiddle([this] {
        answer("no");
        item("mnuExitRecord").trigger();
        EXPECT_TRUE(window().isVisible());
        EXPECT_TRUE(state().isEncoding);
    });
    click("Command20");
    EXPECT_TRUE(acted);
    EXPECT_TRUE(isEncoded(mp3, wav));
    expectNothingGoesOn();
}

TEST_F(RecordEncodingTest, AnEncodingThatIsCutOffCostsNoTake) {
    opened();
    state().Check2 = false;
    state().Check3 = true; // "Delete WAV"
    state().source = RecordingSource::Keyboard;
    click("CmdrecordSNG");
    mix().advance(20 * 44'100);
    click("CmdStopRecording");
    const fs::path take = state().Text6;
    inTheMiddle([this] { window().unload(); }); // the program ends
    click("Command20");
    EXPECT_TRUE(acted);
    EXPECT_TRUE(fs::exists(take));
    EXPECT_FALSE(fs::exists(fs::path(take).replace_extension(".mp3")));
    expectNothingGoesOn();
}
