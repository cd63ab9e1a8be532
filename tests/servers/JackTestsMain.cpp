// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/servers/JackProcesses.h"

#include <gmock/gmock.h>

#include <cstring>

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], velmora::JackReceiver::kArgument) == 0)
        velmora::JackReceiver::run(argv[2]);
    if (argc == 4 && std::strcmp(argv[1], velmora::JackPlayer::kArgument) == 0)
        velmora::JackPlayer::run(argv[2], argv[3]);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
