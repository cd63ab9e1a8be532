// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ScoreExport.h"

#include "../sound/TestSound.h"
#include "sound/ShortMessage.h"
#include "studio/ExportThread.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Waiting.h"

#include <thread>

using namespace velmora;
using namespace velmora::testsinks;
using testing::HasSubstr;
using testing::StartsWith;
using End = ExportOutcome::End;

namespace fs = std::filesystem;

namespace {
constexpr int kSecondsOfMusic = 2;

class ScoreExportTest : public WorkspaceFixture {
protected:
    [[nodiscard]] SoundJob job(const char* name, int seconds = kSecondsOfMusic) const {
        SoundJob job;
        job.messages = {{0, shortmessage::programChange(0, 16)}};
        for (int i = 0; i < seconds; ++i) {
            job.messages.push_back({i + 0.0, shortmessage::noteOn(0, 60 + i % 12, 100)});
            job.messages.push_back({i + 0.9, shortmessage::noteOff(0, 60 + i % 12)});
        }
        job.file = folder / name;
        job.format = job.file.extension() == ".mp3" ? ExportFormat::Mp3 : ExportFormat::Wav;
        job.soundFont = testsound::kSoundFont;
        return job;
    }
    void keep(const char* name) const { std::ofstream(folder / name) << "an old file"; }

    QTemporaryDir temporary;
    fs::path folder = temporary.path().toStdString();
};

} // namespace

TEST_F(ScoreExportTest, BothFormatsOfSoundAreWrittenAndToldOf) {
    for (const char* name : {"tune.wav", "tune.mp3"}) {
        double last = -1;
        const SoundJob made = job(name);
        const ExportOutcome outcome = exportSound(made, [&last](double share) {
            EXPECT_GE(share, last);
            last = share;
        });
        ASSERT_EQ(outcome.end, End::Done) << outcome.error;
        EXPECT_EQ(last, 1);
        EXPECT_EQ(outcome.size, fs::file_size(made.file));
        EXPECT_GE(outcome.seconds, kSecondsOfMusic - 0.1);
        EXPECT_THAT(exportWords(outcome, made.file),
                    testing::AllOf(StartsWith("\"" + std::string(name) + "\" is written: 0:0"),
                                   HasSubstr("in " + folder.string())));
        const std::string witness = made.format == ExportFormat::Mp3 ? "mpg123 -q -t" : "soxi";
        EXPECT_EQ(ask(witness + " '" + made.file.string() + "'").exitCode, 0);
    }
    EXPECT_EQ(filesIn(folder), 2);
}

TEST_F(ScoreExportTest, ACancelLeavesTheOldFileAsItWasAndSaysSo) {
    keep("tune.mp3");
    for (const auto& [name, words] :
         {std::pair("tune.mp3", "Writing \"tune.mp3\" was cancelled; the file of that name is as it was"),
          std::pair("new.mp3", "Writing \"new.mp3\" was cancelled; no file was made")}) {
        std::stop_source cancel;
        const SoundJob made = job(name);
        const ExportOutcome outcome = exportSound(
            made, [&cancel](double) { cancel.request_stop(); }, cancel.get_token());
        EXPECT_EQ(outcome.end, End::Cancelled);
        EXPECT_EQ(exportWords(outcome, made.file), words);
    }
    EXPECT_EQ(bytesOf(folder / "tune.mp3"), "an old file");
    EXPECT_EQ(filesIn(folder), 1);
}

TEST_F(ScoreExportTest, AFullDiskIsNamedWithTheFile) {
    fs::create_symlink("/dev/full", folder / "tune.wav");
    const SoundJob made = job("tune.wav");
    const ExportOutcome outcome = exportSound(made);
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(exportWords(outcome, made.file),
                testing::AllOf(HasSubstr("tune.wav"), HasSubstr("No space left on device"),
                               HasSubstr("Nothing is lost and nothing was replaced.")));
}

TEST_F(ScoreExportTest, AFailureInTheMiddleLeavesTheOldFileAsItWas) {
    for (const char* name : {"tune.wav", "tune.mp3"}) {
        keep(name);
        const SoundJob made = job(name);
        ExportOutcome outcome;
        {
            const FullDisk limit(20'000);
            outcome = exportSound(made);
        }
        EXPECT_EQ(outcome.end, End::Failed);
        EXPECT_THAT(outcome.error, HasSubstr(name));
        EXPECT_EQ(bytesOf(made.file), "an old file");
    }
    EXPECT_EQ(filesIn(folder), 2);
}

TEST_F(ScoreExportTest, WithoutASoundFontItIsSaidWhatToInstall) {
    SoundJob made = job("tune.wav");
    made.soundFont.clear();
    const ExportOutcome outcome = exportSound(made);
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(outcome.error, testing::AllOf(HasSubstr("tune.wav"), HasSubstr("fluid-soundfont-gm")));
    EXPECT_EQ(filesIn(folder), 0);
}

TEST_F(ScoreExportTest, AMidiFileIsWrittenAndTheScoreStaysAsItWas) {
    putNotes(score(), 0, 60, 4);
    const Score before = score();
    const ExportOutcome outcome = exportMidi(workspace(), folder / "tune.mid");
    EXPECT_EQ(outcome.end, End::Done);
    EXPECT_EQ(outcome.size, fs::file_size(folder / "tune.mid"));
    EXPECT_GT(outcome.seconds, 0);
    EXPECT_EQ(score().SongEnd, before.SongEnd);
    EXPECT_EQ(score().NoteCell, before.NoteCell);
    EXPECT_THAT(ask("midicsv '" + (folder / "tune.mid").string() + "'").output, HasSubstr("Note_on_c"));
}

TEST_F(ScoreExportTest, AMidiFileThatCantBeWrittenLeavesTheOldOne) {
    putNotes(score(), 0, 60, 4);
    keep("tune.mid");
    const FullDisk limit(20);
    const ExportOutcome outcome = exportMidi(workspace(), folder / "tune.mid");
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(outcome.error, HasSubstr("tune.mid"));
    EXPECT_EQ(bytesOf(folder / "tune.mid"), "an old file");
}

TEST_F(ScoreExportTest, TheNameIsTheScoresInItsFolderOrAmongTheSongs) {
    const fs::path songs = "/home/me/Songs";
    EXPECT_EQ(exportPlace(folder / "my.march.sng", songs, ExportFormat::Mp3), folder / "my.march.mp3");
    EXPECT_EQ(exportPlace("", songs, ExportFormat::Wav), songs / "Untitled.wav");
    EXPECT_EQ(exportPlace("/proc/1/march.sng", songs, ExportFormat::Midi).extension(), ".mid");
    EXPECT_EQ(exportPlace(folder / "gone" / "march.sng", songs, ExportFormat::Midi), songs / "march.mid")
        << "no file can be made there";
}

TEST_F(ScoreExportTest, LengthAndSizeAreReadable) {
    const auto words = [](double seconds, std::uintmax_t size) {
        return exportWords({.end = End::Done, .error = {}, .seconds = seconds, .size = size}, "/a/tune.mid");
    };
    EXPECT_EQ(words(3.4, 812), "\"tune.mid\" is written: 0:03, 812 bytes, in /a");
    EXPECT_EQ(words(59.7, 64'400), "\"tune.mid\" is written: 1:00, 64 kB, in /a");
    EXPECT_EQ(words(754, 5'140'000), "\"tune.mid\" is written: 12:34, 5.1 MB, in /a");
}

TEST_F(ScoreExportTest, AThreadMakesTheFileAndTellsHowFarItIs) {
    ExportThread thread(job("tune.wav"));
    while (!thread.hasEnded())
        std::this_thread::yield();
    EXPECT_EQ(thread.outcome().end, End::Done) << thread.outcome().error;
    EXPECT_EQ(thread.share(), 1);
    EXPECT_GT(fs::file_size(folder / "tune.wav"), 44);
}

TEST_F(ScoreExportTest, AThreadThatIsCancelledOrLetGoLeavesNothing) {
    constexpr int kLong = 3600;
    ExportThread cancelled(job("tune.wav", kLong));
    cancelled.cancel();
    while (!cancelled.hasEnded())
        std::this_thread::yield();
    EXPECT_EQ(cancelled.outcome().end, End::Cancelled);
    { const ExportThread gone(job("tune.mp3", kLong)); }
    EXPECT_EQ(filesIn(folder), 0);
}
