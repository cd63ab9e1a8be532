// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/SteadyClock.h"
#include "sound/AlsaSequencer.h"
#include "sound/JackHandle.h"
#include "sound/MidiInputBackend.h"
#include "sound/MidiInputQueue.h"
#include "sound/PortNames.h"

#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

namespace {
constexpr const char* kClientName = "Velmora Input"; // `isOurPort` knows it
constexpr double kAgainSeconds = 0.05; ///< a port is announced a moment before it can be connected
constexpr int kMostAgain = 20;

struct JackLibrary : LateLibrary {
    JackLibrary() : LateLibrary(kJackLibrary) {}
    VELMORA_LATE_CALL(jack_activate);
    VELMORA_LATE_CALL(jack_connect);
    VELMORA_LATE_CALL(jack_frame_time);
    VELMORA_LATE_CALL(jack_free);
    VELMORA_LATE_CALL(jack_get_ports);
    VELMORA_LATE_CALL(jack_get_sample_rate);
    VELMORA_LATE_CALL(jack_last_frame_time);
    VELMORA_LATE_CALL(jack_midi_event_get);
    VELMORA_LATE_CALL(jack_midi_get_event_count);
    VELMORA_LATE_CALL(jack_port_by_name);
    VELMORA_LATE_CALL(jack_port_disconnect);
    VELMORA_LATE_CALL(jack_port_get_aliases);
    VELMORA_LATE_CALL(jack_port_get_buffer);
    VELMORA_LATE_CALL(jack_port_name);
    VELMORA_LATE_CALL(jack_port_name_size);
    VELMORA_LATE_CALL(jack_port_register);
    VELMORA_LATE_CALL(jack_set_port_registration_callback);
    VELMORA_LATE_CALL(jack_set_process_callback);
};

/// Loaded where it is first called: on the back end's thread.
const JackLibrary& jack() {
    static const JackLibrary library;
    return library;
}

/// Our client of one running server, with a port for each source, so that they can be told apart.
class JackInputClient {
public:
    static constexpr std::size_t kMostSources = 64;

    /// Null when no server runs, or JACK's library is not there.
    static std::unique_ptr<JackInputClient> openAtServer(MidiInputQueue& queue) {
        if (!jack().complete())
            return nullptr;
        auto handle = JackHandle::open(kClientName);
        if (!handle)
            return nullptr;
        auto client = std::make_unique<JackInputClient>(std::move(handle), queue);
        return client->activate() ? std::move(client) : nullptr;
    }

    JackInputClient(std::unique_ptr<JackHandle> handle, MidiInputQueue& queue)
        : queue_(queue)
        , handle_(std::move(handle)) {}
    ~JackInputClient() { queue_.removeAll(); }
    JackInputClient(const JackInputClient&) = delete;
    JackInputClient& operator=(const JackInputClient&) = delete;

    [[nodiscard]] bool serverLost() const noexcept { return handle_->serverLost(); }

    /// Connects the sources that have come and lets go of those that have gone. False if one could not be
    /// connected.
    bool look() {
        const auto use = handle_->use();
        if (!use)
            return true;
        const std::vector<std::string> now = wantedPorts();
        for (Slot& slot : slots_)
            if (slot.source != 0 && std::ranges::find(now, slot.name) == now.end()) {
                queue_.remove(slot.source.exchange(0));
                jack().jack_port_disconnect(handle_->get(), slot.port); // it may only have another name now
                slot.name.clear();
            }
        bool all = true;
        for (const std::string& name : now)
            if (std::ranges::none_of(slots_, [&](const Slot& slot) { return slot.name == name; }))
                all = connect(name) && all;
        return all;
    }

private:
    struct Slot {
        std::atomic<jack_port_t*> port{nullptr}; ///< made when first needed, and kept for the next source
        std::atomic<int> source{0};              ///< 0 while it has none
        std::string name;                        ///< of the source's port; the back end's thread alone
    };

    bool activate() {
        handle_->onLost([this] { queue_.wakeBackend(); });
        const auto use = handle_->use();
        if (!use)
            return false;
        rate_ = jack().jack_get_sample_rate(handle_->get());
        jack().jack_set_port_registration_callback(
            handle_->get(),
            [](jack_port_id_t, int, void* self) {
                // The library may not be asked for more from here.
                uncancelled([self] { static_cast<JackInputClient*>(self)->queue_.wakeBackend(); });
            },
            this);
        jack().jack_set_process_callback(
            handle_->get(),
            [](jack_nframes_t frames, void* self) {
                uncancelled([frames, self] { static_cast<JackInputClient*>(self)->process(frames); });
                return 0;
            },
            this);
        return jack().jack_activate(handle_->get()) == 0;
    }

    [[nodiscard]] std::string aliasOf(const std::string& name) const {
        const jack_port_t* port = jack().jack_port_by_name(handle_->get(), name.c_str());
        if (port == nullptr)
            return {};
        const auto size = static_cast<std::size_t>(jack().jack_port_name_size());
        std::string first(size, '\0');
        std::string second(size, '\0');
        char* const places[2] = {first.data(), second.data()};
        return jack().jack_port_get_aliases(port, places) > 0 ? first.substr(0, first.find('\0'))
                                                              : std::string();
    }

    [[nodiscard]] std::vector<std::string> wantedPorts() const {
        std::vector<std::string> names;
        const char** ports =
            jack().jack_get_ports(handle_->get(), nullptr, JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput);
        if (ports == nullptr)
            return names;
        for (const char** port = ports; *port != nullptr; ++port)
            if (!isOurPort(*port) && !isLoopback(*port))
                names.emplace_back(*port);
        jack().jack_free(ports);
        if (sequencerAnswers())
            std::erase_if(names, [&](const auto& name) { return bridgesSequencer(name, aliasOf(name)); });
        return names;
    }

    bool connect(const std::string& name) {
        const auto slot = std::ranges::find_if(slots_, [](const Slot& one) { return one.source == 0; });
        if (slot == slots_.end())
            return true; // one more try would find no place either
        if (slot->port == nullptr) {
            const std::string own = "Input " + std::to_string(slot - slots_.begin() + 1);
            slot->port = jack().jack_port_register(handle_->get(), own.c_str(), JACK_DEFAULT_MIDI_TYPE,
                                                   JackPortIsInput, 0);
        }
        if (slot->port == nullptr)
            return false;
        const int result =
            jack().jack_connect(handle_->get(), name.c_str(), jack().jack_port_name(slot->port));
        if (result != 0 && result != EEXIST)
            return false;
        // The server connects between two periods; what is listed is heard from its first note on.
        passPeriods(2);
        slot->name = name;
        // The ports of hardware have numbers, and aliases that say more.
        const std::string alias = name.starts_with("system:") ? aliasOf(name) : std::string();
        slot->source = queue_.add(alias.empty() ? name : alias);
        return true;
    }

    /// Waits until so many more periods have begun, but never for long.
    void passPeriods(unsigned long count) const {
        const unsigned long enough = periods_ + count;
        const double deadline = steadySeconds() + kPassSeconds;
        while (periods_ < enough && !serverLost() && steadySeconds() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    /// On JACK's thread. Realtime-safe: yes.
    void process(jack_nframes_t frames) noexcept {
        ++periods_;
        const jack_nframes_t start = jack().jack_last_frame_time(handle_->get());
        const double now = steadySeconds();
        const jack_nframes_t nowFrame = jack().jack_frame_time(handle_->get());
        for (Slot& slot : slots_) {
            const int source = slot.source;
            jack_port_t* const port = slot.port;
            if (source == 0 || port == nullptr)
                continue;
            void* const buffer = jack().jack_port_get_buffer(port, frames);
            const auto count = jack().jack_midi_get_event_count(buffer);
            for (std::uint32_t i = 0; i < count; ++i) {
                jack_midi_event_t event;
                if (jack().jack_midi_event_get(&event, buffer, i) != 0 || event.size < 2 || event.size > 3)
                    continue;
                std::uint32_t word = 0;
                for (std::size_t k = 0; k < event.size; ++k)
                    word |= static_cast<std::uint32_t>(event.buffer[k]) << (8 * k);
                // It was played in the period before this one.
                const auto age = static_cast<std::int32_t>(nowFrame + frames - start - event.time);
                queue_.push(source, word, now - std::clamp(age / rate_, 0.0, kMostAge));
            }
        }
    }

    static constexpr double kPassSeconds = 0.2;
    static constexpr double kMostAge = 0.5; ///< more means that the server's clock has jumped

    MidiInputQueue& queue_;
    double rate_ = 1; ///< frames a second
    std::atomic<unsigned long> periods_{0};
    std::array<Slot, kMostSources> slots_;
    std::unique_ptr<JackHandle> handle_; ///< goes first, and with it the calls of `process`
};

class JackInput : public MidiInputBackend {
public:
    void run(MidiInputQueue& queue) override {
        std::unique_ptr<JackInputClient> client;
        int again = 0;
        while (!queue.ending()) {
            if (client && client->serverLost())
                client.reset();
            if (!client)
                client = JackInputClient::openAtServer(queue);
            again = !client || client->look() ? 0 : again + 1;
            queue.rest(again > 0 && again <= kMostAgain ? kAgainSeconds : kLookSeconds);
        }
    }
};
} // namespace

std::unique_ptr<MidiInputBackend> createJackInput() {
    // A user who runs no server wants none. The option at jack_client_open asks for the same, but not every
    // implementation of the library heeds it.
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    return std::make_unique<JackInput>();
}

} // namespace velmora
