// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiDevices.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace velmora {

/// What the test and a back end's thread both see of a `FakeBackend`.
struct FakeSystem {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> ports;   ///< the destinations that are there
    std::vector<std::string> events;  ///< "open a", "close a", in their order
    std::vector<std::uint32_t> words; ///< what outlets took
    std::size_t room = MidiOutlet::kQueueLength;
    bool stuck = false;    ///< every call waits until this is false
    bool throwing = false; ///< every call throws
    int lists = 0;         ///< how often it was listed
    std::atomic<bool> alive{true};

    void set(const std::function<void()>& change) {
        const std::lock_guard lock(mutex);
        change();
        changed.notify_all();
    }
    /// Waits, seconds at most; false if it never came.
    bool waitFor(const std::function<bool()>& condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(10), condition);
    }
    std::vector<std::uint32_t> takenWords() {
        const std::lock_guard lock(mutex);
        return std::exchange(words, {});
    }
};

class FakeOutlet : public MidiOutlet {
public:
    FakeOutlet(std::shared_ptr<FakeSystem> system, std::string name)
        : system_(std::move(system))
        , name_(std::move(name)) {}
    ~FakeOutlet() override {
        system_->set([&] { system_->events.push_back("close " + name_); });
    }
    bool send(std::uint32_t word) noexcept override {
        const std::lock_guard lock(system_->mutex);
        if (system_->room == 0 || !system_->alive)
            return false;
        system_->words.push_back(word);
        --system_->room;
        return true;
    }
    [[nodiscard]] std::size_t room() const noexcept override {
        const std::lock_guard lock(system_->mutex);
        return system_->room;
    }
    [[nodiscard]] bool alive() const noexcept override { return system_->alive; }

private:
    std::shared_ptr<FakeSystem> system_;
    std::string name_;
};

class FakeBackend : public MidiBackend {
public:
    explicit FakeBackend(std::shared_ptr<FakeSystem> system) : system_(std::move(system)) {}

    std::vector<std::string> destinations() override {
        std::unique_lock lock(system_->mutex);
        answer(lock);
        ++system_->lists;
        system_->changed.notify_all();
        return system_->ports;
    }
    std::unique_ptr<MidiOutlet> open(const std::string& name) override {
        std::unique_lock lock(system_->mutex);
        answer(lock);
        if (std::ranges::find(system_->ports, name) == system_->ports.end())
            return nullptr;
        system_->events.push_back("open " + name);
        system_->changed.notify_all();
        return std::make_unique<FakeOutlet>(system_, name);
    }

private:
    void answer(std::unique_lock<std::mutex>& lock) {
        system_->changed.wait(lock, [&] { return !system_->stuck; });
        if (system_->throwing)
            throw std::runtime_error("the system is out of order");
    }

    std::shared_ptr<FakeSystem> system_;
};

/// Records what it is sent.
class FakeSynth : public SoftSynth {
public:
    bool there = true;
    std::vector<std::uint32_t> words;
    int resets = 0;
    double lastMoment = 0;

    [[nodiscard]] bool available() override { return there; }
    void send(std::uint32_t word, double moment) override {
        words.push_back(word);
        lastMoment = moment;
    }
    void reset(double moment) override {
        ++resets;
        lastMoment = moment;
    }
};

} // namespace velmora
