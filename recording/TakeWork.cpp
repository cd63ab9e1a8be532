// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/TakeWork.h"

#include <utility>

namespace velmora {

TakeWork::~TakeWork() {
    cancel();
    if (thread_.joinable())
        thread_.join();
}

bool TakeWork::start(Job job, std::function<void(const std::string& words)> done) {
    if (std::exchange(running_, true))
        return false;
    share_ = 0;
    thread_ =
        std::jthread([this, job = std::move(job), done = std::move(done)](const std::stop_token& cancel) {
            const std::string words = job([this](double share) { share_ = share; }, cancel);
            QMetaObject::invokeMethod(
                &context_,
                [this, words, done] {
                    thread_.join();
                    running_ = false;
                    done(words);
                },
                Qt::QueuedConnection);
        });
    return true;
}

} // namespace velmora
