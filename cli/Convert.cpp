// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"
#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/EncoderOptions.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "cli/SoundFont.h"
#include "cli/Words.h"
#include "composition/MidiExport.h"
#include "score/MidiFile.h"
#include "score/SngFile.h"
#include "studio/Mp3File.h"
#include "studio/ScoreExport.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

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
    check(replaceFile(out, session.manners.exportsWhatIsHeard
                               ? midiFileOf(session.performance())
                               : buildMidiFile(session.score, session.chords)));
}

void writeSound(Session& session, const fs::path& out, const ConvertOptions& options, ExportFormat format) {
    ProgressBar bar(out.filename().string());
    std::stop_source cancel;
    const auto progress = [&](double share) {
        bar.show(share);
        if (interrupted())
            cancel.request_stop();
    };
    const ExportOutcome outcome = exportSound({.messages = session.performance().messages,
                                               .file = out,
                                               .format = format,
                                               .soundFont = chosenSoundFont(options.score),
                                               .mp3 = options.mp3},
                                              progress, cancel.get_token());
    check(outcome.error);
    if (outcome.end != ExportOutcome::End::Done)
        throw Failure("Writing \"" + out.string() + "\" was cancelled; what was there before still is.");
}

void writeWav(Session& session, const fs::path& out, const ConvertOptions& options) {
    writeSound(session, out, options, ExportFormat::Wav);
}

void writeMp3(Session& session, const fs::path& out, const ConvertOptions& options) {
    writeSound(session, out, options, ExportFormat::Mp3);
}

struct Format {
    std::string_view extension;
    void (*write)(Session&, const fs::path& out, const ConvertOptions&);
    bool (*isPerformance)(const Manners&); ///< what is written lasts, and a segment of it may be
};
constexpr std::array kFormats{
    Format{".sng", writeSng, [](const Manners&) { return false; }},
    Format{".mid", writeMid, [](const Manners& manners) { return manners.exportsWhatIsHeard; }},
    Format{".wav", writeWav, [](const Manners&) { return true; }},
    Format{".mp3", writeMp3, [](const Manners&) { return true; }},
};

/// @param asked what the user wrote
const Format& formatOf(const std::string& extension, const std::string& asked) {
    const auto* const found = std::ranges::find(kFormats, toLower(extension), &Format::extension);
    if (found == kFormats.end())
        throw UsageError("\"" + asked + "\" names no format; there are sng, mid, wav, mp3");
    return *found;
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
        return {{files[0], files[1], &formatOf(files[1].extension().string(), files[1].string())}};
    }
    if (files.empty())
        throw UsageError("takes at least one score");
    const std::string asked = toBytes(parser.value("to"));
    const Format& format = formatOf(asked.starts_with('.') ? asked : "." + asked, asked);
    std::vector<Job> jobs;
    for (const auto& in : files) {
        const fs::path folder =
            parser.isSet("out") ? fs::path(toBytes(parser.value("out"))) : in.parent_path();
        jobs.push_back({in, (folder / in.filename()).replace_extension(format.extension), &format});
    }
    return jobs;
}

/// Scores are never written over: an older form, read as the newest, would be lost.
void checkPlaces(const std::vector<Job>& jobs) {
    std::set<fs::path> places;
    for (const Job& job : jobs) {
        std::error_code error;
        if (fs::equivalent(job.in, job.out, error))
            throw UsageError("\"" + job.out.string() + "\" would replace the score it is made from");
        const fs::path place = fs::weakly_canonical(job.out, error);
        if (!places.insert(error ? job.out : place).second)
            throw UsageError("\"" + job.out.string() +
                             "\" would be written twice; give the scores a folder each");
    }
}

void makeFolder(const fs::path& folder) {
    if (folder.empty())
        throw UsageError("--out takes a folder");
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw Failure("The folder \"" + folder.string() + "\" can't be made: " + error.message() + ".");
}

void convert(const Job& job, const ConvertOptions& options) {
    Session session(job.in, options.score);
    session.refuseEmptySegment();
    warnOfSilence(job.in, session);
    job.format->write(session, job.out, options);
}

int run(const QCommandLineParser& parser) {
    const auto jobs = jobsOf(parser);
    const ConvertOptions options{.score = readScoreOptions(parser), .mp3 = {.bitrate = readBitrate(parser)}};
    if (options.score.segment && !jobs.front().format->isPerformance(options.score.manners))
        throw UsageError("--segment is for what is performed: wav, mp3, and mid without --classic");
    checkPlaces(jobs);
    if (parser.isSet("out"))
        makeFolder(toBytes(parser.value("out")));
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
        {"bitrate", "Bitrate of MP3 (default: 224).", "kbit/s", "224"},
    });
}

} // namespace

const Command kConvert{"convert", " IN.sng OUT | IN.sng... --to FORMAT [--out DIR]",
                       "Writes a score as .sng, .mid, .wav or .mp3, by the extension of OUT.", addOptions,
                       run};

} // namespace velmora::cli
