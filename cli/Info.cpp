// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/MusicFacts.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "score/MidiFileReader.h"
#include "sound/Instruments.h"
#include "studio/SoundReader.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace velmora::cli {

namespace {

/// The instruments of a channel in the order in which they enter.
std::string instrumentsOf(const Score& score, int channel) {
    std::vector<int> codes;
    const auto cells = score.NoteCell.row(channel);
    const auto instruments = score.NoteInstrument.row(channel);
    for (std::size_t p = 0; p < cells.size(); ++p) {
        if (cellClass(cells[p]) == CellClass::Head && std::ranges::find(codes, instruments[p]) == codes.end())
            codes.push_back(instruments[p]);
    }
    std::string text;
    for (const int code : codes) {
        const auto name = nameOfCode(code);
        text += (text.empty() ? "" : ", ") + std::to_string(code) + " " +
                (name.empty() ? "?" : std::string(name));
    }
    return text.empty() ? "no note begins" : text;
}

void print(const std::filesystem::path& file, const Session& session) {
    const Score& score = session.score;
    std::printf("File: %s\n", file.c_str());
    std::printf("Tempo: %d\n", score.Tempo);
    std::printf("Notes per measure: %d\nBeats per measure: %d\nNote Value: %d\n", session.setup.TxBeats,
                session.setup.TxtMeter, session.setup.NoteX);
    for (const int channel : score.usedChannels())
        std::printf("Channel %d: %s\n", channel, instrumentsOf(score, channel).c_str());
    std::printf("SongEnd: %d\nSeconds: %.3f\n", score.SongEnd, session.seconds());
}

void print(const std::filesystem::path& file, const ScoreOptions& options) {
    if (isSoundName(file))
        printSoundFacts(file);
    else if (isMidiName(file))
        printMidiFacts(file);
    else
        print(file, Session(file, options));
}

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.empty())
        throw UsageError("takes at least one file");
    ScoreOptions options;
    options.reader = readForm(parser);
    int status = 0;
    for (const auto& file : files) {
        try {
            if (&file != &files.front())
                std::puts("");
            print(file, options);
        } catch (const Failure& failure) {
            std::fprintf(stderr, "velmora-cli: %s\n", failure.what());
            status = 1;
        }
    }
    return status;
}

} // namespace

const Command kInfo{"info", " FILE...",
                    "Tells tempo, meter, channels in use with their instruments and length of scores; rate, "
                    "channels, length and peak of .wav and .mp3 files; the length of .mid files.",
                    addFormOption, run};

} // namespace velmora::cli
