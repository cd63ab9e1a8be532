// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/EncoderOptions.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Words.h"
#include "studio/OtherFormats.h"

#include <QCommandLineParser>

#include <cstdio>
#include <filesystem>
#include <stop_token>
#include <string>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

bool isNamed(const fs::path& file, const char* extension) {
    return toLower(file.extension().string()) == extension;
}

EncodeJob jobOf(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.empty() || files.size() > 2)
        throw UsageError("IN.wav is wanted, and OUT.mp3 may follow");
    EncodeJob job{.wav = files[0], .mp3 = fs::path(files[0]).replace_extension("mp3")};
    if (files.size() == 2)
        job.mp3 = files[1];
    job.settings = readEncoderOptions(parser);
    job.settings.format = formatRow(parser);
    job.settings.title = toBytes(parser.value("title"));
    job.settings.artist = toBytes(parser.value("artist"));
    job.settings.cover = toBytes(parser.value("cover"));
    job.deleteWav = parser.isSet("delete-wav");
    return job;
}

void checkSource(const fs::path& wav) {
    const std::string name = wav.string();
    std::error_code error;
    if (!isNamed(wav, ".wav"))
        throw Failure(name + ": The Source file is not a Wave file.");
    if (!fs::exists(wav, error))
        throw Failure(name + ": The Source file is not a Wave file, or does not exist.");
}

int run(const QCommandLineParser& parser) {
    const EncodeJob job = jobOf(parser);
    checkSource(job.wav);
    if (isNamed(job.mp3, ".wav"))
        throw UsageError("\"" + job.mp3.string() + "\" names a Wave file; OUT is an MP3 file");
    catchInterrupts();
    std::stop_source cancel;
    EncodeOutcome outcome;
    {
        ProgressBar bar(job.mp3.filename().string());
        outcome = encodeByName(
            job,
            [&](double share) {
                bar.show(share);
                if (interrupted())
                    cancel.request_stop();
            },
            cancel.get_token());
    }
    if (outcome.end == EncodeOutcome::End::Cancelled)
        throw Failure("Writing \"" + job.mp3.string() + "\" was cancelled; what was there before still is.");
    if (outcome.bitrate != 0 && outcome.bitrate != job.settings.bitrate)
        std::fprintf(stderr, "velmora-cli: \"%s\" has %d kbit/s instead of %d, the most at %d Hz\n",
                     job.mp3.c_str(), outcome.bitrate, job.settings.bitrate, outcome.rate);
    if (!outcome.error.empty())
        throw Failure(outcome.error);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    addEncoderOptions(parser);
    parser.addOptions({
        {"format", "Rate and mode by a row of the encoder's table, 0 to 4 (default: those of IN).", "row"},
        {"title", "The title that players show.", "text"},
        {"artist", "Who plays, likewise.", "text"},
        {"cover", "A JPEG or PNG picture that players show.", "file"},
        {"delete-wav", "Deletes IN once OUT stands whole in its place."},
    });
}

} // namespace

const Command kEncode{"encode", " IN.wav [OUT.mp3]", "Encodes a WAV file as MP3 of constant bitrate.",
                      addOptions, run};

} // namespace velmora::cli
