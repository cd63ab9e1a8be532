// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/Words.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string_view>

namespace {

using namespace velmora::cli;

enum ExitStatus { kOk = 0, kCouldNot = 1, kUsage = 2 };

// clang-format off
constexpr std::array kCommands{
    &kInfo,
    &kConvert,
    &kEdit,
    &kPlay,
    &kRecord,
    &kEncode,
    &kBurn,
    &kMedia,
    &kNotation,
    &kEngrave,
    &kLyrics,
    &kTrace,
    &kPerform,
    &kDevices,
    &kKeys,
};
// clang-format on

void printOverview(std::FILE* out) {
    std::fputs("velmora-cli: what Velmora does with scores, without a window.\n\nUsage:\n", out);
    for (const Command* command : kCommands)
        std::fprintf(out, "  velmora-cli %s%s\n      %s\n", command->name, command->synopsis,
                     command->summary);
    std::fputs("\nvelmora-cli COMMAND --help lists the options of a command.\n"
               "Exit status: 0 done, 1 could not, 2 wrong usage.\n",
               out);
}

int usage(std::string_view problem) {
    std::fprintf(stderr, "velmora-cli: %.*s\nTry: velmora-cli --help\n", static_cast<int>(problem.size()),
                 problem.data());
    return kUsage;
}

void printHelp(const Command& command, const QCommandLineParser& parser) {
    const QString text = parser.helpText();
    std::printf("Usage: velmora-cli %s%s [options]\n%s\n\n%s", command.name, command.synopsis,
                command.summary, qUtf8Printable(text.mid(text.indexOf("Options:"))));
    if (command.details)
        std::printf("\n%s", command.details().c_str());
}

int runCommand(const Command& command, const QStringList& words) {
    QCommandLineParser parser;
    const QCommandLineOption help({"h", "help"}, "Shows this help.");
    parser.addOption(help);
    command.addOptions(parser);
    if (!parser.parse(words))
        return usage(toBytes(parser.errorText()));
    if (parser.isSet(help)) {
        printHelp(command, parser);
        return kOk;
    }
    try {
        return command.run(parser);
    } catch (const UsageError& error) {
        return usage(std::string(command.name) + ": " + error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-cli: %s\n", error.what());
        return kCouldNot;
    }
}

int runWords(QStringList words) {
    if (words.size() < 2)
        return usage("a command is missing");
    const QString name = words.takeAt(1);
    if (name == "--help" || name == "-h" || name == "help") {
        printOverview(stdout);
        return kOk;
    }
    if (name == "--version") {
        std::puts("velmora-cli " VELMORA_VERSION);
        return kOk;
    }
    const auto* const command =
        std::ranges::find_if(kCommands, [&name](const Command* one) { return name == one->name; });
    if (command == kCommands.end())
        return usage("there is no command \"" + toBytes(name) + "\"");
    return runCommand(**command, words);
}

} // namespace

int main(int argc, char* argv[]) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is an error like any other
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("velmora-cli");
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words.append(fromBytes(argv[i]));
    const int status = runWords(words);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::fputs("velmora-cli: standard output can't be written\n", stderr);
    return status == kOk ? kCouldNot : status;
}
