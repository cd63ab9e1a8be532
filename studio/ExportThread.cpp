// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ExportThread.h"

#include <sys/resource.h>

#include <algorithm>

namespace velmora {

namespace {
/// What is heard and seen comes first: a core is left to it, and the others when it wants them. The threads
/// that this one starts inherit that.
void stepBack() {
    constexpr int kNice = 10;
    setpriority(PRIO_PROCESS, 0, kNice); // of this thread alone
}

SoundJob withACoreLess(SoundJob job) {
    job.cores = std::max(1, job.cores - 1);
    return job;
}
} // namespace

ExportThread::ExportThread(SoundJob job)
    : job_(withACoreLess(std::move(job)))
    , thread_([this] {
        stepBack();
        outcome_ = exportSound(
            job_, [this](double share) { share_ = share; }, cancel_.get_token());
        ended_ = true;
    }) {}

ExportThread::~ExportThread() {
    cancel();
    thread_.join();
}

} // namespace velmora
