// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiInputQueue.h"

#include "sound/ShortMessage.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cmath>
#include <utility>

namespace velmora {

WakeDescriptor::WakeDescriptor() : descriptor_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

WakeDescriptor::~WakeDescriptor() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

void WakeDescriptor::wake() noexcept {
    if (awake_.exchange(true))
        return;
    constexpr std::uint64_t kOnce = 1;
    [[maybe_unused]] const auto written = ::write(descriptor_, &kOnce, sizeof kOnce);
}

void WakeDescriptor::take() noexcept {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = ::read(descriptor_, &count, sizeof count);
    // Last: who wakes after this makes it readable again, and what was said before is yet to be looked at.
    awake_.exchange(false);
}

std::optional<std::uint32_t> inputWord(std::uint32_t word) noexcept {
    using namespace shortmessage;
    if (!isValid(word))
        return std::nullopt;
    switch (status(word)) {
    case 0x90:
        return data2(word) > 0 ? word : noteOff(channel(word), data1(word));
    case 0x80:
    case 0xB0:
    case 0xE0:
        return word;
    case 0xD0:
        return word & 0xFFFFU;
    default:
        return std::nullopt;
    }
}

MidiInputQueue::MidiInputQueue(std::shared_ptr<WakeDescriptor> bell, int firstId, int step)
    : bell_(std::move(bell))
    , nextId_(firstId)
    , step_(step) {}

int MidiInputQueue::add(std::string name) {
    int id = 0;
    {
        const std::lock_guard lock(mutex_);
        id = std::exchange(nextId_, nextId_ + step_);
        sources_.push_back({id, std::move(name)});
        changed_ = true;
    }
    bell_->wake();
    return id;
}

void MidiInputQueue::remove(int source) {
    {
        const std::lock_guard lock(mutex_);
        if (std::erase_if(sources_, [&](const Source& one) { return one.id == source; }) == 0)
            return;
        changed_ = true;
    }
    bell_->wake();
}

void MidiInputQueue::removeAll() {
    {
        const std::lock_guard lock(mutex_);
        if (sources_.empty())
            return;
        sources_.clear();
        changed_ = true;
    }
    bell_->wake();
}

void MidiInputQueue::rest(double seconds) {
    pollfd file{.fd = backendBell_.descriptor(), .events = POLLIN, .revents = 0};
    ::poll(&file, 1, static_cast<int>(std::ceil(seconds * 1000)));
    backendBell_.take();
}

void MidiInputQueue::push(int source, std::uint32_t word, double moment) noexcept {
    const auto fit = inputWord(word);
    if (!fit)
        return;
    const std::size_t spare = shortmessage::status(*fit) == 0x80 ? 0 : kReserved;
    if (ring_.push({source, *fit, moment}, spare))
        bell_->wake();
    else
        lost();
}

void MidiInputQueue::lost() noexcept {
    lost_ = true;
    bell_->wake();
}

std::optional<std::vector<MidiInputQueue::Source>> MidiInputQueue::takeSources() {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(changed_, false))
        return std::nullopt;
    return sources_;
}

void MidiInputQueue::end() noexcept {
    ending_ = true;
    backendBell_.wake();
}

} // namespace velmora
