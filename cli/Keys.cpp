// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/ScoreOptions.h"
#include "cli/Words.h"
#include "keyboard/KeyFile.h"
#include "keyboard/KeyScheme.h"

#include <QCommandLineParser>

#include <charconv>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

struct NewLabel {
    std::size_t key;
    std::string text;
};

std::optional<int> keyNumber(std::string_view word) {
    int key = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), key);
    if (error != std::errc() || end != word.data() + word.size() || !isPianoKey(key))
        return std::nullopt;
    return key;
}

NewLabel newLabelOf(const std::string& word) {
    const auto equals = word.find('=');
    if (equals == word.npos)
        throw UsageError("--set takes KEY=TEXT, not \"" + word + "\"");
    const auto key = keyNumber(std::string_view(word).substr(0, equals));
    if (!key)
        throw UsageError("a key is a number from 0 to 43, not \"" + word.substr(0, equals) + "\"");
    if (word.find('\n') != word.npos)
        throw UsageError("the label of key " + std::to_string(*key) + " is more than a line");
    return {static_cast<std::size_t>(*key), textOfLabel(word.substr(equals + 1))};
}

struct KeysJob {
    std::optional<fs::path> in;
    std::vector<NewLabel> labels;
    std::optional<fs::path> out;
};

KeysJob jobOf(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() > 1)
        throw UsageError("takes one keyboard scheme");
    KeysJob job;
    if (!files.empty())
        job.in = files.front();
    for (const QString& word : parser.values("set"))
        job.labels.push_back(newLabelOf(toBytes(word)));
    if (parser.isSet("out")) {
        const std::string name = toBytes(parser.value("out"));
        if (name.find_first_not_of(' ') == name.npos)
            throw UsageError("--out takes a file");
        job.out = keyFileName(name);
    }
    return job;
}

void check(const std::string& problem) {
    if (!problem.empty())
        throw Failure(problem);
}

void print(const KeyScheme& scheme) {
    for (int key = 0; key < kPianoKeys; ++key)
        std::printf("%d %d %s\n", key, kLowestNote + key,
                    scheme.labels[static_cast<std::size_t>(key)].c_str());
}

int run(const QCommandLineParser& parser) {
    const KeysJob job = jobOf(parser);
    KeyScheme scheme = KeyScheme::builtIn();
    if (job.in)
        check(OpenKeyScheme(*job.in, scheme));
    for (const NewLabel& label : job.labels)
        scheme.labels[label.key] = label.text;
    if (job.out)
        check(SaveKeyScheme(*job.out, scheme));
    else
        print(scheme);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {"set", "Replaces the label of a key, 0 to 43; may be given many times.", "KEY=TEXT"},
        {"out", "Writes the scheme to this file instead of showing it; \".key\" is added where it lacks it.",
         "OUT.key"},
    });
}

} // namespace

const Command kKeys{"keys", " [IN.key] [--set KEY=TEXT]... [--out OUT.key]",
                    "Shows or writes a keyboard scheme: which computer key plays which key.", addOptions,
                    run};

} // namespace velmora::cli
