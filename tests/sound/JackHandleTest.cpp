// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/JackHandle.h"

#include <gmock/gmock.h>

#include <pthread.h>

#include <atomic>

using namespace velmora;

namespace {
/// A thread as the library has them: it may be cancelled at any instruction.
struct LibraryThread {
    std::atomic<bool> begun{false};
    std::atomic<bool> mayEnd{false};
    std::atomic<bool> ended{false};
    std::atomic<bool> wentOn{false};

    void process() noexcept {
        begun = true;
        while (!mayEnd) {
        }
        ended = true;
    }
    static void* run(void* given) {
        auto* const self = static_cast<LibraryThread*>(given);
        ::pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, nullptr);
        uncancelled([self] { self->process(); });
        self->wentOn = true;
        return nullptr;
    }
};
} // namespace

TEST(JackHandleTest, AThreadOfTheLibraryThatIsCancelledInOurCallEndsBehindIt) {
    LibraryThread given;
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, nullptr, LibraryThread::run, &given), 0);
    while (!given.begun) {
    }
    ::pthread_cancel(thread);
    given.mayEnd = true;
    ::pthread_join(thread, nullptr);
    EXPECT_TRUE(given.ended);
    EXPECT_FALSE(given.wentOn);
}
