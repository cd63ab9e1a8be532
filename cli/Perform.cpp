// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"
#include "cli/Commands.h"
#include "cli/KeyboardPlayer.h"
#include "cli/PerformScript.h"
#include "cli/ScoreOptions.h"
#include "cli/Words.h"
#include "keyboard/KeyFile.h"

#include <QCommandLineParser>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>

namespace velmora::cli {

namespace {

void addOptions(QCommandLineParser& parser) {
    parser.addOption({"scheme", "The keyboard scheme; the built-in one if left out.", "FILE.key"});
    parser.addOption({"take", "Writes the take as it stands at the end.", "FILE"});
}

std::string scriptOf(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 1)
        throw UsageError("takes exactly one script, or - for one to read");
    if (files.front() == "-")
        return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    auto text = readWholeFile(files.front());
    if (!text)
        throw Failure("\"" + files.front().string() + "\" can't be read");
    return std::move(*text);
}

std::string textOf(const Take& take) {
    std::string text;
    for (std::size_t i = 0; i < take.List3.size(); ++i)
        text += std::to_string(take.List1[i]) + " " + std::to_string(take.List3[i]) + "\n";
    return text;
}

int run(const QCommandLineParser& parser) {
    const auto events = parsePerformScript(scriptOf(parser));
    KeyScheme scheme = KeyScheme::builtIn();
    if (parser.isSet("scheme"))
        if (const std::string problem = OpenKeyScheme(toBytes(parser.value("scheme")), scheme);
            !problem.empty())
            throw Failure(problem);

    int status = 0;
    const auto failed = [&status](const std::string& problem) {
        std::fprintf(stderr, "velmora-cli: %s\n", problem.c_str());
        status = 1;
    };
    KeyboardPlayer player(
        scheme,
        {.word = [](double seconds, std::uint32_t word) { std::printf("%.6f 0x%06X\n", seconds, word); },
         .reset = [](double seconds) { std::printf("%.6f reset\n", seconds); },
         .box =
             [](double seconds, std::string_view text) {
                 std::printf("%.6f box %.*s\n", seconds, static_cast<int>(text.size()), text.data());
             },
         .failed = failed});
    for (const PerformEvent& event : events) {
        player.passTo(event.seconds);
        event.run(player);
    }
    player.finish();
    if (parser.isSet("take"))
        if (const std::string problem =
                replaceFile(toBytes(parser.value("take")), textOf(player.keyboard.take));
            !problem.empty())
            failed(problem);
    return status;
}

} // namespace

const Command kPerform{"perform",
                       " SCRIPT [--scheme FILE.key] [--take FILE]",
                       "Plays the keyboard by a script, and lists every message with its second.",
                       addOptions,
                       run,
                       performEvents};

} // namespace velmora::cli
