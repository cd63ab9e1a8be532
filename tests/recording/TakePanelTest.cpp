// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/TakePanel.h"

#include "RecordFixture.h"
#include "recording/Waveform.h"
#include "studio/Encoder.h"
#include "studio/Loudness.h"
#include "studio/SoundReader.h"
#include "tests/studio/SoundBytes.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestWaves.h"
#include "tests/support/FullDisk.h"

#include <fstream>
#include <sstream>

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
namespace fs = std::filesystem;

/// The Recording Studio with a take of a second of silence.
class TakePanelTest : public RecordFixture {
protected:
    void take() {
        opened();
        state().Check2 = false; // no MP3
        state().source = RecordingSource::Keyboard;
        click("CmdrecordSNG");
        mix().advance(44100);
        click("CmdStopRecording");
        file_ = state().Text6;
        ASSERT_TRUE(fs::exists(file_));
    }
    /// Its picture, once it is whole.
    void showTake() {
        click("showTake");
        ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("playPart"); }));
    }
    /// In its place, some seconds of a quiet hiss.
    void takeHiss(std::size_t seconds = 3) {
        take();
        auto values = testwaves::noise(seconds * 44100, 5);
        for (std::int16_t& value : values)
            value = static_cast<std::int16_t>(value / 20);
        std::ofstream(file_, std::ios::binary) << testwaves::wavOf(values);
    }
    /// The same as MP3, and no WAV file, as a recording leaves it.
    void takeMp3(std::size_t seconds = 3, const EncodeSettings& how = {}) {
        takeHiss(seconds);
        const fs::path wav = std::exchange(file_, fs::path(file_).replace_extension(".mp3"));
        ASSERT_EQ(encode({.wav = wav, .mp3 = file_, .settings = how, .deleteWav = true}).error, "");
        state().Text6 = file_.string();
    }
    /// What a file tells of itself.
    static SoundInfo infoOf(const fs::path& file) {
        const OpenedSound opened = openSound(file);
        EXPECT_EQ(opened.error, "");
        return opened.reader ? opened.reader->info() : SoundInfo{};
    }
    [[nodiscard]] std::ptrdiff_t filesBeside() const {
        return std::distance(fs::directory_iterator(file_.parent_path()), {});
    }
    [[nodiscard]] fs::path beside(const char* ending) const {
        return file_.parent_path() / (file_.stem().string() + ending);
    }
    static std::string bytesOf(const fs::path& file) {
        std::ostringstream bytes;
        bytes << std::ifstream(file, std::ios::binary).rdbuf();
        return bytes.str();
    }
    Waveform& wave() { return control<Waveform>("waveform"); }
    bool isShown(const char* name) { return control(name).isVisible(); }
    [[nodiscard]] const fs::path& file() const { return file_; }

private:
    fs::path file_;
};
} // namespace

TEST_F(TakePanelTest, ItStandsInThePlaceOfTheMessages) {
    take();
    showTake();
    EXPECT_TRUE(isShown("takePanel"));
    EXPECT_FALSE(isShown("messagePanel"));
    EXPECT_FALSE(isShown("afterPanel"));
    click("back");
    EXPECT_FALSE(isShown("takePanel"));
    EXPECT_TRUE(isShown("messagePanel"));
    EXPECT_TRUE(control("showTake").hasFocus());
}

TEST_F(TakePanelTest, AnotherTakeBringsTheMessagesBack) {
    take();
    showTake();
    QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(state().isRecording);
    EXPECT_TRUE(isShown("messagePanel"));
}

TEST_F(TakePanelTest, ItTellsTheFileAndItsLength) {
    take();
    showTake();
    const std::string words = file().filename().string() + ", 1.0 seconds";
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("takeWords") == words; })) << text("takeWords");
}

TEST_F(TakePanelTest, ItTellsWhereThePartLies) {
    take();
    showTake();
    const std::string words = file().filename().string() + ", 1.0 seconds";
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("takeWords") == words; })) << text("takeWords");
    EXPECT_EQ(wave().accessibleName(), "Picture of the take");
    wave().setFocus();
    wave().setMarks(0, 0.5);
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(&wave(), Qt::Key_Right);
    EXPECT_EQ(text("takeWords"), words + ", part 0.2 to 0.5");
    EXPECT_EQ(wave().accessibleName(), "Picture of the take, part 0.2 to 0.5");
    click("cut");
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("takeWords").ends_with("cut.wav, 0.3 seconds"); }))
        << text("takeWords");
    EXPECT_EQ(wave().accessibleName(), "Picture of the take") << "of another file";
}

TEST_F(TakePanelTest, ALongNameGivesWayToItsLength) {
    take();
    const fs::path longer = file().parent_path() / (std::string(150, 'w') + " <b>.wav");
    fs::copy_file(file(), longer);
    state().Text6 = longer.string();
    showTake();
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("takeWords").ends_with(", 1.0 seconds"); }))
        << text("takeWords");
    const auto& words = control<QLabel>("takeWords");
    EXPECT_LE(words.fontMetrics().horizontalAdvance(words.text()), words.width());
    EXPECT_EQ(words.textFormat(), Qt::PlainText);
    EXPECT_THAT(words.accessibleName().toStdString(), HasSubstr(longer.filename().string()));
}

TEST_F(TakePanelTest, ItsControlsAreNamedAndToldAboutInTheOrderOfReading) {
    take();
    showTake();
    wave().setFocus();
    std::vector<std::string> order;
    do {
        QWidget& part = *QApplication::focusWidget();
        order.push_back(part.objectName().toStdString());
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(&part)->text(QAccessible::Name).isEmpty())
            << order.back();
        ASSERT_NE(tips.toolTip(part), nullptr) << order.back();
        QTest::keyClick(&part, Qt::Key_Tab);
    } while (control("takePanel").isAncestorOf(QApplication::focusWidget()) && order.size() < 20 &&
             !wave().hasFocus());
    EXPECT_THAT(order, ElementsAre("waveform", "playPart", "cut", "fade", "louder", "title", "artist",
                                   "cover", "saveAs", "back"));
}

TEST_F(TakePanelTest, WithoutATakeThereIsNothingToPress) {
    opened();
    click("showTake");
    EXPECT_EQ(text("takeWords"), "No recording yet");
    for (const char* name : {"waveform", "playPart", "cut", "fade", "louder", "saveAs"})
        EXPECT_FALSE(isEnabled(name)) << name;
}

TEST_F(TakePanelTest, APartIsCutOutBesideTheWhole) {
    take();
    showTake();
    wave().setMarks(0.25, 0.75);
    click("cut");
    const fs::path part = file().parent_path() / (file().stem().string() + " cut.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == part.string(); })) << state().Erbox;
    EXPECT_EQ(fs::file_size(part), 44U + 22050 * 4);
    EXPECT_EQ(fs::file_size(file()), 44U + 44100 * 4) << "which stays";
    EXPECT_THAT(state().Erbox, HasSubstr("File was saved as " + part.string()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return text("takeWords").ends_with("cut.wav, 0.5 seconds"); }));
    EXPECT_EQ(wave().begin(), 0) << "of another file";
}

TEST_F(TakePanelTest, ARecordingThatBecameMp3IsCutAndMadeLouderAsItIs) {
    opened();
    state().source = RecordingSource::Keyboard;
    click("CmdrecordSNG");
    mix().advance(88200);
    click("CmdStopRecording");
    ASSERT_TRUE(state().Text6.ends_with(".mp3")) << state().Erbox;
    const fs::path mp3 = state().Text6;
    ASSERT_FALSE(fs::exists(fs::path(mp3).replace_extension(".wav"))) << "it was deleted";
    showTake();
    EXPECT_TRUE(isEnabled("cut"));
    EXPECT_TRUE(isEnabled("louder"));
    EXPECT_TRUE(isEnabled("fade"));
    wave().setMarks(0.25, 0.75);
    click("cut");
    const fs::path part = mp3.parent_path() / (mp3.stem().string() + " cut.mp3");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == part.string(); })) << state().Erbox;
    EXPECT_EQ(infoOf(part).kind, SoundKind::Mp3);
    EXPECT_EQ(infoOf(part).frames, infoOf(mp3).frames / 2);
}

TEST_F(TakePanelTest, AnMp3FileThatIsCutIsSaidToBeEncodedAgain) {
    takeMp3(3, {.bitrate = 128, .title = "Morning Walk"});
    showTake();
    EXPECT_THAT(control("cut").accessibleDescription().toStdString(),
                HasSubstr("An MP3 file is encoded again for that"));
    EXPECT_THAT(control("louder").accessibleDescription().toStdString(),
                HasSubstr("An MP3 file is encoded again for that"));
    const std::string before = bytesOf(file());
    state().artist = "Ada";
    wave().setMarks(0, 0.5);
    click("cut");
    const fs::path part = beside(" cut.mp3");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == part.string(); })) << state().Erbox;
    EXPECT_THAT(state().Erbox,
                HasSubstr("File was saved as " + part.string() +
                          "\nMP3 can't be changed as it is: it was encoded again, at 128 kbit/s"));
    const SoundInfo info = infoOf(part);
    EXPECT_EQ(info.frames, 3 * 44100 / 2);
    EXPECT_EQ(info.bitrate, 128);
    EXPECT_EQ(info.title, "Morning Walk");
    EXPECT_EQ(info.artist, "Ada");
    EXPECT_EQ(bytesOf(file()), before);
}

TEST_F(TakePanelTest, AQuietMp3FileIsMadeAsLoudAsOthersInAFileOfItsOwn) {
    takeMp3();
    showTake();
    const std::string before = bytesOf(file());
    click("louder");
    const fs::path loud = beside(" loud.mp3");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == loud.string(); }, 15'000)) << state().Erbox;
    EXPECT_NEAR(measureLoudness(loud).loudness.integrated, -14, 0.3);
    EXPECT_THAT(state().Erbox, HasSubstr("encoded again, at 224 kbit/s"));
    EXPECT_EQ(infoOf(loud).frames, 3 * 44100);
    EXPECT_EQ(bytesOf(file()), before);
}

TEST_F(TakePanelTest, FloatsAndLogarithmicSamplesAreCutAsTheyAre) {
    take();
    std::string sound(80'000, '\0');
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<char>(i % 4 == 3 ? 0x3D : i * 7);
    for (const soundbytes::WavFormat& format : {soundbytes::WavFormat{.code = 3, .bits = 32},
                                                {.code = 6, .bits = 8},
                                                {.code = 7, .bits = 8},
                                                {.bits = 24}}) {
        soundbytes::writeFile(file(), soundbytes::Wav().format(format).chunk("data", sound).bytes());
        state().Text6 = file().string();
        showState();
        showTake();
        const std::int64_t frames = infoOf(file()).frames;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return isEnabled("cut") && text("takeWords").starts_with(file().filename().string()); }));
        wave().setMarks(0.5, 1);
        click("cut");
        const fs::path part = beside(" cut.wav");
        ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == part.string(); })) << state().Erbox;
        EXPECT_EQ(infoOf(part).bits, format.bits);
        EXPECT_EQ(infoOf(part).isFloat, format.code == 3);
        EXPECT_EQ(infoOf(part).frames, frames - (frames + 1) / 2);
        EXPECT_THAT(state().Erbox, testing::Not(HasSubstr("16 bits")));
        const auto frame = static_cast<std::size_t>(format.bits / 8 * format.channels);
        const auto begin = static_cast<std::size_t>((frames + 1) / 2) * frame;
        EXPECT_THAT(bytesOf(part),
                    HasSubstr(sound.substr(begin, static_cast<std::size_t>(frames) * frame - begin)));
        fs::remove(part);
        click("back");
    }
}

TEST_F(TakePanelTest, AFadedFileOfLogarithmicSamplesIsSaidToHaveSixteenBits) {
    take();
    soundbytes::writeFile(file(), soundbytes::Wav()
                                      .format({.code = 7, .channels = 1, .rate = 8000, .bits = 8})
                                      .chunk("data", std::string(24'000, '\x90'))
                                      .bytes());
    showTake();
    click("fade");
    click("cut");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == beside(" cut.wav").string(); }));
    EXPECT_EQ(infoOf(beside(" cut.wav")).bits, 16);
    EXPECT_THAT(state().Erbox, HasSubstr("those of the new file have 16 bits"));
}

TEST_F(TakePanelTest, WhatFailsOrIsCancelledLeavesTheMp3FileAndNothingBeside) {
    takeMp3(60);
    showTake();
    const std::string before = bytesOf(file());
    const auto files = filesBeside();
    for (const char* name : {"cut", "louder"}) {
        click(name);
        EXPECT_EQ(control<QAbstractButton>(name).text(), "Cancel");
        ASSERT_TRUE(QTest::qWaitFor([this] { return text("takeLoudness") != "0 % done"; }));
        click(name);
        ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("saveAs"); }, 15'000));
        EXPECT_THAT(state().Erbox, testing::EndsWith("Cancelled\n"));
        {
            const FullDisk disk(100'000);
            click(name);
            ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("saveAs"); }, 15'000));
        }
        EXPECT_THAT(state().Erbox, testing::EndsWith(".mp3\" failed: File too large.\n"));
        EXPECT_EQ(state().Text6, file().string());
        EXPECT_EQ(bytesOf(file()), before);
        EXPECT_EQ(filesBeside(), files);
    }
}

TEST_F(TakePanelTest, PressingThePicturePlays) {
    take();
    showTake();
    wave().onPlay(0.5);
    EXPECT_THAT(state().Erbox, HasSubstr("File Opened\nPlaying\n"));
}

TEST_F(TakePanelTest, TheTagsAreTheSessions) {
    take();
    showTake();
    QTest::keyClicks(&control("title"), "Morning Walk");
    QTest::keyClicks(&control("artist"), "Ada");
    EXPECT_EQ(state().title, "Morning Walk");
    EXPECT_EQ(state().artist, "Ada");
    dialogs.answers.push_back({"/somewhere/face.png", 1});
    click("cover");
    EXPECT_EQ(state().cover, "/somewhere/face.png");
    EXPECT_TRUE(control<QAbstractButton>("cover").isChecked());
    click("cover");
    EXPECT_EQ(state().cover, "");
    EXPECT_FALSE(control<QAbstractButton>("cover").isChecked());
}

TEST_F(TakePanelTest, ItTellsPeakAndLoudnessOfTheFileShown) {
    takeHiss();
    showTake();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !text("takeLoudness").empty(); }));
    const Loudness measured = measureLoudness(file()).loudness;
    EXPECT_EQ(text("takeLoudness"), QStringLiteral("Peak %1 dB, loudness %2 LUFS")
                                        .arg(measured.peak, 0, 'f', 1)
                                        .arg(measured.integrated, 0, 'f', 1)
                                        .toStdString());
    EXPECT_NEAR(measured.peak, -26, 0.1);
}

TEST_F(TakePanelTest, ATakeIsToldHowLoudItIs) {
    take();
    ASSERT_TRUE(QTest::qWaitFor([this] { return text("loudness") == "Silent"; })) << text("loudness");
    EXPECT_TRUE(isShown("loudness"));
    click("CmdrecordSNG");
    EXPECT_EQ(text("loudness"), "") << "of the last one";
}

TEST_F(TakePanelTest, AQuietTakeIsMadeAsLoudAsOthersInAFileOfItsOwn) {
    takeHiss();
    showTake();
    const std::string before = bytesOf(file());
    click("louder");
    const fs::path loud = beside(" loud.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == loud.string(); })) << state().Erbox;
    EXPECT_NEAR(measureLoudness(loud).loudness.integrated, -14, 0.2);
    EXPECT_EQ(bytesOf(file()), before);
    EXPECT_THAT(state().Erbox, HasSubstr("File was saved as " + loud.string()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return text("takeLoudness").ends_with("loudness -14.0 LUFS"); }))
        << text("takeLoudness");
}

TEST_F(TakePanelTest, TheButtonThatMakesAFileCancelsIt) {
    takeHiss(60);
    showTake();
    click("louder");
    EXPECT_EQ(control<QAbstractButton>("louder").text(), "Cancel");
    EXPECT_FALSE(isEnabled("cut"));
    EXPECT_FALSE(isEnabled("saveAs"));
    EXPECT_THAT(text("takeLoudness"), testing::EndsWith(" % done"));
    click("louder");
    ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("cut"); }));
    EXPECT_THAT(state().Erbox, HasSubstr("Cancelled"));
    EXPECT_EQ(control<QAbstractButton>("louder").text(), "Make it as loud as others");
    EXPECT_EQ(state().Text6, file().string());
    EXPECT_FALSE(fs::exists(beside(" loud.wav")));
}

TEST_F(TakePanelTest, SilenceCannotBeMadeLouder) {
    take();
    showTake();
    click("louder");
    ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("louder") && isEnabled("cut"); }));
    EXPECT_THAT(state().Erbox, HasSubstr("is silent"));
    EXPECT_EQ(state().Text6, file().string());
}

TEST_F(TakePanelTest, ATakeIsSavedInOtherFormatsWithItsTags) {
    takeHiss();
    showTake();
    state().title = "Morning Walk";
    state().artist = "Ada";
    constexpr std::array kBegins{"fLaC", "OggS", "OggS"};
    constexpr std::array kEndings{".flac", ".ogg", ".opus"};
    for (std::size_t i = 0; i < kBegins.size(); ++i) {
        const fs::path wanted = beside(kEndings[i]);
        dialogs.answers.push_back({(wanted.parent_path() / wanted.stem()).string(), static_cast<int>(i) + 1});
        click("saveAs");
        ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("cut"); }));
        ASSERT_TRUE(fs::exists(wanted)) << state().Erbox;
        const std::string bytes = bytesOf(wanted);
        EXPECT_THAT(bytes, testing::StartsWith(kBegins[i]));
        EXPECT_THAT(bytes, HasSubstr("Morning Walk"));
        EXPECT_THAT(bytes, HasSubstr("Ada"));
        EXPECT_THAT(state().Erbox, HasSubstr("File was saved as " + wanted.string()));
    }
    EXPECT_EQ(state().Text6, file().string()) << "which stays what is worked on";
    EXPECT_EQ(dialogs.asked.front().filters,
              "FLAC (*.flac)|*.flac|Ogg Vorbis (*.ogg)|*.ogg|Opus (*.opus)|*.opus");
    EXPECT_EQ(dialogs.asked.front().start, beside(".flac").string());
}

TEST_F(TakePanelTest, WithoutANameNothingIsSaved) {
    takeHiss();
    showTake();
    const std::string before = state().Erbox;
    click("saveAs");
    EXPECT_EQ(control<QAbstractButton>("saveAs").text(), "Save As FLAC, Ogg or Opus...");
    EXPECT_EQ(state().Erbox, before);
}

TEST_F(TakePanelTest, NoWordIsCutAtTheLeastSize) {
    takeHiss();
    showTake();
    for (const auto* button : control("takePanel").findChildren<QAbstractButton*>()) {
        const int words = QFontMetrics(button->font()).horizontalAdvance(button->text());
        EXPECT_LE(words, button->width()) << button->objectName().toStdString();
    }
    const auto& loudness = control<QLabel>("takeLoudness");
    EXPECT_LE(loudness.fontMetrics().horizontalAdvance("Peak -26.0 dB, loudness -28.0 LUFS"),
              loudness.width());
}
