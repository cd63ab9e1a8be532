// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"
#include "cli/Commands.h"
#include "cli/NotationOptions.h"
#include "cli/ScoreOptions.h"
#include "notation/LyricsFile.h"
#include "notation/ScoreSetup.h"
#include "notation/Sheets.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

namespace velmora::cli {

namespace {

using notation::LyricsFile;
using notation::numberText;

/// The texts that stand on one of the sheets, sheet by sheet.
std::vector<notation::LyricsItem> placed(std::vector<notation::LyricsItem> items, int count) {
    std::erase_if(items,
                  [count](const notation::LyricsItem& item) { return item.page < 1 || item.page > count; });
    notation::Sheets sheets;
    sheets.setItems(std::move(items));
    return sheets.items();
}

std::string toldValues(const LyricsFile& file) {
    std::string text;
    const auto tell = [&text](const char* word, const auto& value) {
        if (!value)
            return;
        text.append(word).append(1, ' ');
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(*value)>, std::string>)
            text += *value;
        else
            text += numberText(*value);
        text += '\n';
    };
    tell("title", file.title);
    tell("width", file.width);
    tell("sheet-width", file.sheetWidth);
    tell("spacer", file.SpacerHeight);
    tell("bar-width", file.BarWidth);
    tell("header", file.HeaderHeight);
    tell("key", file.key);
    tell("start", file.start);
    tell("text", file.text1);
    return text;
}

std::string told(const notation::LyricsItem& item) {
    return "item " + std::to_string(item.page) + ' ' + numberText(item.left) + ' ' + numberText(item.top) +
           ' ' + numberText(item.size) + ' ' + item.font + '\t' + item.text + '\n';
}

void print(const LyricsFile& file) {
    std::string text = toldValues(file);
    for (const notation::LyricsItem& item : file.items)
        text += told(item);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// A document has every value: what the file lacks stands as on the panel.
void complete(LyricsFile& file) {
    const notation::ScoreSetup panel;
    const auto set = [](auto& value, auto fallback) { value = value.value_or(fallback); };
    set(file.title, std::string());
    set(file.width, 0.0);
    set(file.sheetWidth, 0.0);
    set(file.SpacerHeight, static_cast<double>(panel.SpacerHeight));
    set(file.BarWidth, static_cast<double>(panel.BarWidth));
    set(file.HeaderHeight, static_cast<double>(panel.HeaderHeight));
    set(file.key, panel.key);
    set(file.start, panel.start);
    set(file.text1, std::string());
}

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.empty() || files.size() > 2)
        throw UsageError("IN.lyr is wanted, and OUT.lyr may follow");
    constexpr int kMost = std::numeric_limits<int>::max();
    const int sheets =
        parser.isSet("sheets") ? readNumber(parser, "sheets", 0, kMost, "a number of sheets") : kMost;
    LyricsFile file = readLyrics(files.front());
    file.items = placed(std::move(file.items), sheets);
    if (files.size() == 1) {
        print(file);
        return 0;
    }
    complete(file);
    if (const std::string problem = replaceFile(files[1], notation::serializeLyrics(file)); !problem.empty())
        throw Failure(problem);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOption(
        {"sheets", "Reads into a document of so many sheets; otherwise as many as it takes.", "number"});
}

} // namespace

const Command kLyrics{"lyrics", " IN.lyr [OUT.lyr]",
                      "Lists what a lyrics file holds, or saves it as the Songwriter does.", addOptions, run};

} // namespace velmora::cli
