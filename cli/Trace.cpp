// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/VirtualLoop.h"
#include "cli/Commands.h"
#include "cli/MessageListener.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "composition/Player.h"

#include <QCommandLineParser>

#include <cstdio>

namespace velmora::cli {

namespace {

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 1)
        throw UsageError("takes exactly one score");
    Session session(files.front(), readScoreOptions(parser));
    VirtualLoop loop;
    MessageListener port(loop, [&session](const TimedMessage& one) {
        std::printf("%d %.6f ", session.state.PlayPosition, one.seconds);
        if (one.reset)
            std::puts("reset");
        else
            std::printf("0x%06X\n", one.word);
    });
    Player player(session.played(), port, loop);
    session.perform(player);
    return 0;
}

} // namespace

const Command kTrace{"trace", " IN.sng",
                     "Lists every message that playing sends: position, seconds, message.", addScoreOptions,
                     run};

} // namespace velmora::cli
