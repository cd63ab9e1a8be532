// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "cli/SoundFont.h"
#include "score/MidiFile.h"
#include "score/SngFile.h"
#include "shell/Files.h"
#include "studio/Mp3File.h"
#include "studio/OfflineRender.h"
#include "studio/WavFile.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

struct ConvertOptions {
    ScoreOptions score;
    Mp3Options mp3;
};

void check(const std::string& problem) {
    if (!problem.empty())
        throw Failure(problem);
}

void writeSng(Session& session, const fs::path& out, const ConvertOptions& /*options*/) {
    check(replaceFile(out, serializePoliFile(session.score, session.setup)));
}

void writeMid(Session& session, const fs::path& out, const ConvertOptions& /*options*/) {
    check(replaceFile(out, buildMidiFile(session.score, session.chords)));
}

void writeSound(Session& session, SampleSink& sink, const fs::path& out, const ConvertOptions& options) {
    ProgressBar bar(out.filename().string());
    std::stop_source cancel;
    const auto messages = performedMessages(session);
    const RenderResult result = renderOffline(messages, sink,
                                              {.soundFont = chosenSoundFont(options.score),
                                               .progress =
                                                   [&](double share) {
                                                       bar.show(share);
                                                       if (interrupted())
                                                           cancel.request_stop();
                                                   },
                                               .cancel = cancel.get_token()});
    check(result.error);
    if (result.end != RenderResult::End::Done)
        throw Failure(out.string() + ": cancelled; nothing was written");
}

void writeWav(Session& session, const fs::path& out, const ConvertOptions& options) {
    WavFile file(out);
    writeSound(session, file, out, options);
}

void writeMp3(Session& session, const fs::path& out, const ConvertOptions& options) {
    Mp3File file(out, options.mp3);
    writeSound(session, file, out, options);
}

struct Format {
    std::string_view extension;
    void (*write)(Session&, const fs::path& out, const ConvertOptions&);
    bool takesSegment; ///< what is written is a performance
};
constexpr std::array kFormats{
    Format{".sng", writeSng, false},
    Format{".mid", writeMid, false},
    Format{".wav", writeWav, true},
    Format{".mp3", writeMp3, true},
};

const Format& formatOf(std::string extension) {
    std::ranges::transform(extension, extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const auto* const found = std::ranges::find(kFormats, extension, &Format::extension);
    if (found == kFormats.end())
        throw UsageError("\"" + extension + "\" is no format; there are sng, mid, wav, mp3");
    return *found;
}

int bitrateOf(const QString& text) {
    bool isNumber = false;
    const int bitrate = text.toInt(&isNumber);
    if (!isNumber || std::ranges::find(kMp3Bitrates, bitrate) == kMp3Bitrates.end()) {
        std::string known;
        for (const int one : kMp3Bitrates)
            known += " " + std::to_string(one);
        throw UsageError("--bitrate takes one of" + known + ", not \"" + text.toStdString() + "\"");
    }
    return bitrate;
}

struct Job {
    fs::path in;
    fs::path out;
    const Format* format;
};

std::vector<Job> jobsOf(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (!parser.isSet("to")) {
        if (files.size() != 2 || parser.isSet("out"))
            throw UsageError("IN.sng and OUT are wanted, or several scores with --to and --out");
        return {{files[0], files[1], &formatOf(files[1].extension().string())}};
    }
    if (files.empty())
        throw UsageError("a score is missing");
    const Format& format = formatOf("." + parser.value("to").toStdString());
    std::vector<Job> jobs;
    for (const auto& in : files) {
        const fs::path folder = parser.isSet("out") ? fs::path(parser.value("out").toStdString()) : in.parent_path();
        jobs.push_back({in, (folder / in.filename()).replace_extension(format.extension), &format});
    }
    return jobs;
}

void convert(const Job& job, const ConvertOptions& options) {
    Session session(job.in, options.score);
    if (session.score.usedChannels().empty())
        std::fprintf(stderr, "velmora-cli: %s: no notes were found in it\n", job.in.c_str());
    job.format->write(session, job.out, options);
}

int run(const QCommandLineParser& parser) {
    const auto jobs = jobsOf(parser);
    const ConvertOptions options{.score = readScoreOptions(parser),
                                 .mp3 = {.bitrate = bitrateOf(parser.value("bitrate"))}};
    if (options.score.segment && !jobs.front().format->takesSegment)
        throw UsageError("--segment is for what sounds: wav and mp3");
    if (parser.isSet("out")) {
        std::error_code error;
        fs::create_directories(parser.value("out").toStdString(), error);
        if (error)
            throw Failure(parser.value("out").toStdString() + ": can't be made: " + error.message());
    }
    catchInterrupts();
    int status = 0;
    for (const Job& job : jobs) {
        try {
            convert(job, options);
        } catch (const Failure& failure) {
            std::fprintf(stderr, "velmora-cli: %s\n", failure.what());
            status = 1;
        }
        if (interrupted())
            return 1;
    }
    return status;
}

void addOptions(QCommandLineParser& parser) {
    addScoreOptions(parser);
    parser.addOptions({
        {"to", "Converts every score given to this format: sng, mid, wav, mp3.", "format"},
        {"out", "The folder for them (default: beside each score).", "folder"},
        {"bitrate", "Kilobits per second of MP3.", "kbit/s", "224"},
    });
}

} // namespace

const Command kConvert{"convert", "IN.sng OUT | IN.sng... --to FORMAT --out DIR",
                       "Writes a score as .sng, .mid, .wav or .mp3, by the extension of OUT.", addOptions, run};

} // namespace velmora::cli
