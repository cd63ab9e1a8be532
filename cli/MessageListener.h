// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "sound/MidiPort.h"
#include "sound/TimedMessage.h"

#include <functional>
#include <utility>

namespace velmora::cli {

/// A port that hands each message on, with its moment on the loop's clock, and sounds nothing.
class MessageListener : public MidiPort {
public:
    using Listen = std::function<void(const TimedMessage&)>;
    MessageListener(const MessageLoop& loop, Listen listen) : loop_(loop), listen_(std::move(listen)) {}

    int deviceCount() override { return 0; }
    std::string deviceName(int /*device*/) override { return {}; }
    int open(int /*device*/) override { return kOk; }
    int close() override { return kOk; }
    void reset() override { listen_({loop_.now(), 0, true}); }
    void send(std::uint32_t word) override { listen_({loop_.now(), word, false}); }

private:
    const MessageLoop& loop_;
    Listen listen_;
};

} // namespace velmora::cli
