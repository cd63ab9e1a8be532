// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "sound/MidiPort.h"

#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace velmora {

/// A port that keeps what it is sent, with the moment on the loop's clock, and which devices were opened.
/// They come, go and fail as a test says.
class RecordingPort : public MidiPort {
public:
    struct Sent {
        std::uint32_t word = 0;
        double moment = 0;
        bool operator==(const Sent&) const = default;
    };
    static constexpr std::uint32_t kReset = 0xFFFFFFFFU; ///< stands in the list for a reset

    explicit RecordingPort(const MessageLoop& loop) : loop_(loop) {}

    int deviceCount() override { return static_cast<int>(names.size()); }
    std::string deviceName(int device) override {
        return device >= 0 && device < deviceCount() ? names[static_cast<std::size_t>(device)] : "";
    }
    int open(int device) override {
        opened.push_back(device);
        return refused.contains(device) ? kOk + 1 : kOk;
    }
    int close() override {
        ++closed;
        return kOk;
    }
    void reset() override { sent.push_back({kReset, loop_.now()}); }
    void send(std::uint32_t word) override { sent.push_back({word, loop_.now()}); }

    [[nodiscard]] std::vector<std::uint32_t> words() const {
        std::vector<std::uint32_t> list;
        for (const Sent& one : sent)
            list.push_back(one.word);
        return list;
    }
    /// Note-ons, note-offs and resets alone: what a tune is about.
    [[nodiscard]] std::vector<Sent> notes() const {
        std::vector<Sent> list;
        for (const Sent& one : sent)
            if (one.word == kReset || (one.word & 0xE0U) == 0x80U)
                list.push_back(one);
        return list;
    }

    std::vector<Sent> sent;
    std::vector<std::string> names{"recording"};
    std::vector<int> opened;
    std::set<int> refused; ///< devices that can't be opened
    int closed = 0;

private:
    const MessageLoop& loop_;
};

inline std::ostream& operator<<(std::ostream& out, const RecordingPort::Sent& one) {
    return out << std::hex << "0x" << one.word << std::dec << " at " << one.moment;
}

} // namespace velmora
