// SPDX-License-Identifier: GPL-2.0-or-later
// Composes and keeps what it composes until it is killed: RecoveryWalker FOLDER SEED. It says each `Tempo`
// whose score is on the disk.
#include "RecoveryWalk.h"
#include "composition/RecoveryFile.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char* argv[]) {
    using namespace velmora;
    if (argc != 3)
        return 2;
    RecoveryFile file(argv[1]);
    if (const auto left = file.left(); !left.empty())
        file.adopt(left.front());
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    RecoveryWalk walk(std::atoi(argv[2]));
    while (walk.score.Tempo < 30000) {
        walk.step();
        file.keep(walk.score, walk.setup);
        file.finish();
        std::printf("%d\n", walk.score.Tempo);
    }
    return 0;
}
