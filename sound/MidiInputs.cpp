// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiInputs.h"

#include "base/SteadyClock.h"
#include "sound/PortNames.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace velmora {

struct MidiInputs::Lane {
    /// What both threads know. The thread holds it too, so it outlives its owner if the back end hangs.
    struct Shared {
        Shared(std::unique_ptr<MidiInputBackend> given, std::shared_ptr<WakeDescriptor> bell, int firstId,
               int step)
            : queue(std::move(bell), firstId, step)
            , backend(std::move(given)) {}

        MidiInputQueue queue;
        std::unique_ptr<MidiInputBackend> backend; ///< the thread's alone

        std::mutex mutex; ///< guards what follows
        std::condition_variable changed;
        bool ended = false;
    };

    static void run(const std::shared_ptr<Shared>& shared) {
        try {
            shared->backend->run(shared->queue);
        } catch (...) {
            // A back end that fails has no sources.
        }
        shared->queue.removeAll();
        shared->backend.reset();
        const std::lock_guard lock(shared->mutex);
        shared->ended = true;
        shared->changed.notify_all();
    }

    [[nodiscard]] bool knows(int source) const { return holds(sources, source); }
    /// Takes over who has come, and notes who has gone. True if there is any of them.
    bool learn() {
        auto now = shared->queue.takeSources();
        if (!now)
            return false;
        for (const auto& source : sources)
            if (!holds(*now, source.id) && std::ranges::find(leaving, source.id) == leaving.end())
                leaving.push_back(source.id);
        for (auto& source : *now)
            if (!knows(source.id))
                sources.push_back(std::move(source));
        return true;
    }

    std::shared_ptr<Shared> shared;
    std::vector<MidiInputQueue::Source> sources; ///< as the guests know them
    std::vector<int> leaving;                    ///< those among them that have gone

private:
    static bool holds(const std::vector<MidiInputQueue::Source>& list, int source) {
        return std::ranges::any_of(list, [&](const auto& one) { return one.id == source; });
    }
};

MidiInputs::MidiInputs(std::vector<std::unique_ptr<MidiInputBackend>> backends)
    : backends_(std::move(backends)) {}

MidiInputs::~MidiInputs() {
    notifier_.reset();
    for (const auto& lane : lanes_)
        lane->shared->queue.end();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(kEndSeconds);
    for (const auto& lane : lanes_) {
        std::unique_lock lock(lane->shared->mutex);
        lane->shared->changed.wait_until(
            lock, std::chrono::time_point_cast<std::chrono::steady_clock::duration>(deadline),
            [&] { return lane->shared->ended; });
    }
}

Guests<MidiListener>::Stay MidiInputs::join(MidiListener& guest) {
    if (!bell_)
        start();
    return guests_.join(guest);
}

void MidiInputs::start() {
    bell_ = std::make_shared<WakeDescriptor>();
    const int count = static_cast<int>(backends_.size());
    for (int i = 0; i < count; ++i) {
        auto lane = std::make_unique<Lane>();
        lane->shared = std::make_shared<Lane::Shared>(std::move(backends_[static_cast<std::size_t>(i)]),
                                                      bell_, i + 1, count);
        std::thread(Lane::run, lane->shared).detach();
        lanes_.push_back(std::move(lane));
    }
    backends_.clear();
    if (bell_->descriptor() < 0 || !QAbstractEventDispatcher::instance())
        return;
    notifier_ = std::make_unique<QSocketNotifier>(bell_->descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { serve(); });
}

void MidiInputs::serve() {
    if (!bell_)
        return;
    bell_->take();
    bool listChanged = false;
    for (const auto& lane : lanes_)
        listChanged = serve(*lane) || listChanged;
    if (listChanged)
        guests_.tell(&MidiListener::midiSourcesChanged);
}

/// What was played is told between who has come and who has gone: so it is of a source that is listed, and
/// nothing comes of one after its end.
bool MidiInputs::serve(Lane& lane) {
    MidiInputQueue& queue = lane.shared->queue;
    bool changed = lane.learn();
    if (changed)
        list();
    // A source that never rests must not keep the interface from going on.
    std::size_t left = MidiInputQueue::kLength;
    for (; left > 0 && queue.front() != nullptr; --left) {
        const auto message = *queue.front();
        queue.pop();
        if (!lane.knows(message.source) && lane.learn()) {
            changed = true;
            list();
        }
        if (lane.knows(message.source))
            guests_.tell(&MidiListener::midiMessage, message.source, message.word, message.moment);
    }
    if (left == 0)
        bell_->wake();
    for (const int source : std::exchange(lane.leaving, {})) {
        std::erase_if(lane.sources, [&](const auto& one) { return one.id == source; });
        list();
        guests_.tell(&MidiListener::midiEnded, source);
    }
    if (queue.takeLost())
        for (const auto& source : lane.sources)
            guests_.tell(&MidiListener::midiEnded, source.id);
    return changed;
}

void MidiInputs::list() {
    std::vector<std::string> names;
    sources_.clear();
    for (const auto& lane : lanes_)
        for (const auto& source : lane->sources) {
            names.push_back(source.name);
            sources_.push_back({source.id, {}});
        }
    names = shortPortNames(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        sources_[i].name = std::move(names[i]);
}

} // namespace velmora
