// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/NotationOptions.h"
#include "notation/Keys.h"

#include <QCommandLineParser>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace velmora::cli {

namespace {

using notation::Pitch;
using notation::StaffClef;
using notation::Written;
using notation::WrittenScore;

constexpr std::array<std::string_view, 3> kClefs{"treble", "bass", "percussion"};
constexpr std::array<std::string_view, 4> kSigns{"-", "#", "b", "n"};
constexpr std::array<std::string_view, 4> kTies{"-", "in", "out", "in+out"};

/// What @p textOf says of each, with "+" between; "-" for none.
template<class List, class TextOf>
std::string joined(const List& list, TextOf textOf) {
    std::string text;
    for (const auto& one : list) {
        if (!text.empty())
            text += '+';
        text += textOf(one);
    }
    return text.empty() ? "-" : text;
}

/// NAME SIGN PLACE STEM
std::string pitchFields(const Written& note, const WrittenScore& score) {
    if (score.staves[static_cast<std::size_t>(note.staff)].clef == StaffClef::Percussion)
        return "- - - -";
    return joined(note.pitches, [](const Pitch& one) { return one.name; }) + ' ' +
           joined(note.pitches,
                  [](const Pitch& one) { return kSigns.at(static_cast<std::size_t>(one.sign)); }) +
           ' ' + joined(note.pitches, [](const Pitch& one) { return std::to_string(one.place); }) + ' ' +
           (note.stemUp ? "up" : "down");
}

std::string lineOf(const Written& item, const WrittenScore& score, bool isClassic) {
    std::string line = item.isRest ? "rest" : "note";
    for (const int number : {item.bar, item.staff + 1, item.step, item.steps})
        line += ' ' + std::to_string(number);
    line += ' ' + joined(item.values, [](const notation::Value& one) { return textOf(one); });
    if (item.isRest)
        return line;
    line += (item.held ? " held " : " struck ") + pitchFields(item, score) + ' ';
    line += item.beamCount > 0 ? std::to_string(item.beamIndex) + '/' + std::to_string(item.beamCount) : "-";
    if (!isClassic)
        line.append(1, ' ').append(kTies.at((item.tiedIn ? 1U : 0U) + (item.tiedOut ? 2U : 0U)));
    return line;
}

void print(const WrittenScore& score, bool isClassic) {
    std::printf("score %d %d %d %d %d %s\n", score.first, score.LastStep, score.NotesPerMeasure,
                score.TxtMeter, score.NoteX,
                notation::kKeys.at(static_cast<std::size_t>(score.key)).text.data());
    if (score.bars() < 1)
        return;
    for (std::size_t i = 0; i < score.staves.size(); ++i)
        std::printf("staff %zu %d %s\n", i + 1, score.staves[i].channel,
                    kClefs.at(static_cast<std::size_t>(score.staves[i].clef)).data());
    for (const Written& item : score.items)
        std::puts(lineOf(item, score, isClassic).c_str());
}

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 1)
        throw UsageError("takes exactly one score");
    const NotationOptions options = readNotationOptions(parser);
    const ReadMusic music = readMusic(files.front(), options);
    print(music.score, music.setup.classicPage);
    return 0;
}

} // namespace

const Command kNotation{"notation", " IN.sng",
                        "Lists the music as staff notation writes it: staves, notes and rests, bar by bar.",
                        addNotationOptions, run};

} // namespace velmora::cli
