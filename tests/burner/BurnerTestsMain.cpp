// SPDX-License-Identifier: GPL-2.0-or-later
#include <gmock/gmock.h>

#include <unistd.h>

#include <cstdlib>

/// Starts itself once more with the burner of the tests in place: it answers for /dev/sr0.
int main(int argc, char** argv) {
    if (std::getenv("VELMORA_FAKE_BURNER") == nullptr) {
        setenv("VELMORA_FAKE_BURNER", "/nonexistent", 1);
        setenv("LD_PRELOAD", VELMORA_FAKE_BURNER_MODULE, 1);
        execv("/proc/self/exe", argv);
        return EXIT_FAILURE;
    }
    unsetenv("LD_PRELOAD");
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
