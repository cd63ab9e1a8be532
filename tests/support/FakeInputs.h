// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiInputs.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// MIDI inputs on which a test plays. Nothing runs before somebody joins them.
class FakeInputs {
public:
    FakeInputs() = default;
    FakeInputs(const FakeInputs&) = delete;
    FakeInputs& operator=(const FakeInputs&) = delete;

    /// A source comes. Somebody has joined before.
    int plug(const std::string& name) {
        const int id = queue().add(name);
        inputs.serve();
        return id;
    }
    void unplug(int source) {
        queue().remove(source);
        inputs.serve();
    }
    void play(int source, std::uint32_t word, double moment = 0) {
        queue().push(source, word, moment);
        inputs.serve();
    }
    /// What has been put in is told with `inputs.serve()`.
    MidiInputQueue& queue() {
        std::unique_lock lock(system_->mutex);
        system_->changed.wait(lock, [&] { return system_->queue != nullptr; });
        return *system_->queue;
    }

private:
    struct System {
        std::mutex mutex;
        std::condition_variable changed;
        MidiInputQueue* queue = nullptr;
    };
    class Backend : public MidiInputBackend {
    public:
        explicit Backend(std::shared_ptr<System> system) : system_(std::move(system)) {}
        void run(MidiInputQueue& queue) override {
            {
                const std::lock_guard lock(system_->mutex);
                system_->queue = &queue;
                system_->changed.notify_all();
            }
            while (!queue.ending())
                queue.rest(kLookSeconds);
        }

    private:
        std::shared_ptr<System> system_;
    };

    std::shared_ptr<System> system_ = std::make_shared<System>();

    [[nodiscard]] static std::vector<std::unique_ptr<MidiInputBackend>>
    oneBackend(const std::shared_ptr<System>& system) {
        std::vector<std::unique_ptr<MidiInputBackend>> backends;
        backends.push_back(std::make_unique<Backend>(system));
        return backends;
    }

public:
    MidiInputs inputs{oneBackend(system_)};
};

/// Notes what it is told, in words.
class RecordingListener final : public MidiListener {
public:
    void midiMessage(int source, std::uint32_t word, double moment) override {
        char text[32];
        std::snprintf(text, sizeof text, "%d %06x", source, static_cast<unsigned>(word));
        told.emplace_back(text);
        words.push_back(word);
        moments.push_back(moment);
    }
    void midiEnded(int source) override { told.push_back(std::to_string(source) + " ended"); }
    void midiSourcesChanged() override { told.emplace_back("list"); }

    std::vector<std::string> told;
    std::vector<std::uint32_t> words;
    std::vector<double> moments;
};

} // namespace velmora
