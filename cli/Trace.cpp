// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Commands.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "composition/Performance.h"

#include <QCommandLineParser>

#include <cstddef>
#include <cstdio>

namespace velmora::cli {

namespace {

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 1)
        throw UsageError("takes exactly one score");
    const Session session(files.front(), readScoreOptions(parser));
    session.refuseEmptySegment();
    const Performance performance = session.performance();
    for (std::size_t i = 0; i < performance.messages.size(); ++i) {
        const TimedMessage& one = performance.messages[i];
        std::printf("%d %.6f ", performance.origins[i].position, one.seconds);
        if (one.reset)
            std::puts("reset");
        else
            std::printf("0x%06X\n", one.word);
    }
    return 0;
}

} // namespace

const Command kTrace{"trace", " IN.sng",
                     "Lists every message that playing sends: position, seconds, message.", addScoreOptions,
                     run};

} // namespace velmora::cli
