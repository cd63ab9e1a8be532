// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/SteadyClock.h"
#include "sound/AlsaInputRules.h"
#include "sound/AlsaSequencer.h"
#include "sound/MidiBackends.h"
#include "sound/MidiInputBackend.h"
#include "sound/MidiInputQueue.h"

#include <alsa/asoundlib.h>

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

// ALSA's own library and not RtMidi: that one doesn't tell when a keyboard is plugged in, and opens one
// source a client. Here one client subscribes to the system's announcements and to every source, and hears
// both in one order.

namespace velmora {

namespace {
struct AlsaLibrary : LateLibrary {
    AlsaLibrary() : LateLibrary(kAlsaLibrary) {}
    VELMORA_LATE_CALL(snd_seq_client_id);
    VELMORA_LATE_CALL(snd_seq_client_info_free);
    VELMORA_LATE_CALL(snd_seq_client_info_get_client);
    VELMORA_LATE_CALL(snd_seq_client_info_get_name);
    VELMORA_LATE_CALL(snd_seq_client_info_malloc);
    VELMORA_LATE_CALL(snd_seq_client_info_set_client);
    VELMORA_LATE_CALL(snd_seq_close);
    VELMORA_LATE_CALL(snd_seq_connect_from);
    VELMORA_LATE_CALL(snd_seq_create_simple_port);
    VELMORA_LATE_CALL(snd_seq_event_input);
    VELMORA_LATE_CALL(snd_seq_get_any_client_info);
    VELMORA_LATE_CALL(snd_seq_get_any_port_info);
    VELMORA_LATE_CALL(snd_seq_open);
    VELMORA_LATE_CALL(snd_seq_poll_descriptors);
    VELMORA_LATE_CALL(snd_seq_poll_descriptors_count);
    VELMORA_LATE_CALL(snd_seq_port_info_free);
    VELMORA_LATE_CALL(snd_seq_port_info_get_capability);
    VELMORA_LATE_CALL(snd_seq_port_info_get_name);
    VELMORA_LATE_CALL(snd_seq_port_info_get_port);
    VELMORA_LATE_CALL(snd_seq_port_info_get_type);
    VELMORA_LATE_CALL(snd_seq_port_info_malloc);
    VELMORA_LATE_CALL(snd_seq_port_info_set_client);
    VELMORA_LATE_CALL(snd_seq_port_info_set_port);
    VELMORA_LATE_CALL(snd_seq_query_next_client);
    VELMORA_LATE_CALL(snd_seq_query_next_port);
    VELMORA_LATE_CALL(snd_seq_set_client_name);
    VELMORA_LATE_CALL(snd_seq_set_client_pool_input);
};

/// Loaded where it is first called: on the back end's thread.
const AlsaLibrary& alsa() {
    static const AlsaLibrary library;
    return library;
}

constexpr std::size_t kEventsAtOnce = 1000; ///< that the kernel keeps for us

using Address = std::pair<int, int>; ///< client and port

struct Closed {
    void operator()(snd_seq_t* handle) const { alsa().snd_seq_close(handle); }
};
struct Freed {
    void operator()(snd_seq_client_info_t* info) const { alsa().snd_seq_client_info_free(info); }
    void operator()(snd_seq_port_info_t* info) const { alsa().snd_seq_port_info_free(info); }
};

/// Our client of the sequencer, with its one port.
class SequencerClient {
public:
    /// Null where there is no sequencer, or its library isn't there.
    static std::unique_ptr<SequencerClient> open(MidiInputQueue& queue) {
        if (!sequencerAnswers() || !alsa().complete())
            return nullptr;
        snd_seq_t* handle = nullptr;
        if (alsa().snd_seq_open(&handle, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK) < 0)
            return nullptr;
        auto client = std::make_unique<SequencerClient>(handle, queue);
        return client->prepare() ? std::move(client) : nullptr;
    }

    SequencerClient(snd_seq_t* handle, MidiInputQueue& queue) : handle_(handle), queue_(queue) {}
    ~SequencerClient() { queue_.removeAll(); }
    SequencerClient(const SequencerClient&) = delete;
    SequencerClient& operator=(const SequencerClient&) = delete;

    /// Waits for events and serves them. False once the sequencer gives none any more.
    bool serve() {
        const int count = alsa().snd_seq_poll_descriptors_count(handle_.get(), POLLIN);
        std::vector<pollfd> files(static_cast<std::size_t>(std::max(count, 0)) + 1);
        alsa().snd_seq_poll_descriptors(handle_.get(), files.data(), static_cast<unsigned>(files.size() - 1),
                                        POLLIN);
        files.back() = {.fd = queue_.descriptor(), .events = POLLIN, .revents = 0};
        // What another program has for itself may become free without any announcement.
        const int wait = refused_ ? static_cast<int>(MidiInputBackend::kLookSeconds * 1000) : -1;
        const int ready = ::poll(files.data(), files.size(), wait);
        if (ready < 0)
            return errno == EINTR;
        if (ready == 0)
            subscribeToAll();
        if (files.back().revents != 0)
            queue_.rest(0);
        for (const auto& file : files)
            if ((file.revents & (POLLERR | POLLNVAL)) != 0)
                return false;
        return takeEvents();
    }

private:
    bool prepare() {
        alsa().snd_seq_set_client_name(handle_.get(), kMidiClientName);
        alsa().snd_seq_set_client_pool_input(handle_.get(), kEventsAtOnce);
        client_ = alsa().snd_seq_client_id(handle_.get());
        // Others can't subscribe to it, so that it stands in no list of devices to play on.
        port_ = alsa().snd_seq_create_simple_port(
            handle_.get(), "Input", SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
            SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
        if (client_ < 0 || port_ < 0)
            return false;
        // First, so that nothing that comes while the others are counted is missed.
        if (alsa().snd_seq_connect_from(handle_.get(), port_, SND_SEQ_CLIENT_SYSTEM,
                                        SND_SEQ_PORT_SYSTEM_ANNOUNCE) < 0)
            return false;
        subscribeToAll();
        return true;
    }

    void subscribeToAll() {
        refused_ = false;
        const std::unique_ptr<snd_seq_client_info_t, Freed> client = clientInfo();
        const std::unique_ptr<snd_seq_port_info_t, Freed> port = portInfo();
        if (!client || !port)
            return;
        alsa().snd_seq_client_info_set_client(client.get(), -1);
        while (alsa().snd_seq_query_next_client(handle_.get(), client.get()) >= 0) {
            const int number = alsa().snd_seq_client_info_get_client(client.get());
            alsa().snd_seq_port_info_set_client(port.get(), number);
            alsa().snd_seq_port_info_set_port(port.get(), -1);
            while (alsa().snd_seq_query_next_port(handle_.get(), port.get()) >= 0)
                consider({number, alsa().snd_seq_port_info_get_port(port.get())});
        }
    }

    /// Hears a port if it is wanted, and no longer if it isn't.
    void consider(Address address) {
        const auto port = ask(address);
        if (!port || !isWanted(*port, client_))
            return forget(address);
        if (sources_.contains(address))
            return;
        const int result = alsa().snd_seq_connect_from(handle_.get(), port_, address.first, address.second);
        if (result == 0)
            sources_[address] = queue_.add(port->fullName());
        else
            refused_ = true;
    }

    void forget(Address address) {
        const auto place = sources_.find(address);
        if (place == sources_.end())
            return;
        queue_.remove(place->second);
        sources_.erase(place);
    }

    std::optional<SequencerPort> ask(Address address) const {
        const std::unique_ptr<snd_seq_client_info_t, Freed> client = clientInfo();
        const std::unique_ptr<snd_seq_port_info_t, Freed> port = portInfo();
        if (!client || !port ||
            alsa().snd_seq_get_any_client_info(handle_.get(), address.first, client.get()) < 0 ||
            alsa().snd_seq_get_any_port_info(handle_.get(), address.first, address.second, port.get()) < 0)
            return std::nullopt;
        return SequencerPort{.client = address.first,
                             .port = address.second,
                             .capability = alsa().snd_seq_port_info_get_capability(port.get()),
                             .type = alsa().snd_seq_port_info_get_type(port.get()),
                             .clientName = alsa().snd_seq_client_info_get_name(client.get()),
                             .portName = alsa().snd_seq_port_info_get_name(port.get())};
    }

    bool takeEvents() {
        for (;;) {
            snd_seq_event_t* event = nullptr;
            const int result = alsa().snd_seq_event_input(handle_.get(), &event);
            if (result == -EAGAIN)
                return true;
            if (result == -ENOSPC)
                missEvents();
            else if (result < 0 && result != -EINTR)
                return false;
            else if (event != nullptr)
                take(*event);
        }
    }

    void take(const snd_seq_event_t& event) {
        if (const auto word = wordOf(event)) {
            const auto place = sources_.find({event.source.client, event.source.port});
            if (place != sources_.end())
                queue_.push(place->second, *word, steadySeconds());
            return;
        }
        const SequencerNews news = newsOf(event);
        switch (news.kind) {
        case SequencerNews::Kind::Port:
            return consider({news.client, news.port});
        case SequencerNews::Kind::NoPort:
            return forget({news.client, news.port});
        case SequencerNews::Kind::NoClient:
            return forgetClient(news.client);
        case SequencerNews::Kind::None:
            return;
        }
    }

    void forgetClient(int client) {
        while (true) {
            const auto place = sources_.lower_bound({client, 0});
            if (place == sources_.end() || place->first.first != client)
                return;
            forget(place->first);
        }
    }

    /// The kernel had no room for more: announcements may be among what is lost.
    void missEvents() {
        queue_.lost();
        const auto known = sources_;
        for (const auto& [address, id] : known)
            consider(address);
        subscribeToAll();
    }

    static std::unique_ptr<snd_seq_client_info_t, Freed> clientInfo() {
        snd_seq_client_info_t* info = nullptr;
        alsa().snd_seq_client_info_malloc(&info);
        return std::unique_ptr<snd_seq_client_info_t, Freed>(info);
    }
    static std::unique_ptr<snd_seq_port_info_t, Freed> portInfo() {
        snd_seq_port_info_t* info = nullptr;
        alsa().snd_seq_port_info_malloc(&info);
        return std::unique_ptr<snd_seq_port_info_t, Freed>(info);
    }

    std::unique_ptr<snd_seq_t, Closed> handle_;
    MidiInputQueue& queue_;
    int client_ = -1;
    int port_ = -1;
    bool refused_ = false;           ///< a source that is wanted couldn't be had
    std::map<Address, int> sources_; ///< with their numbers
};

class AlsaInput : public MidiInputBackend {
public:
    void run(MidiInputQueue& queue) override {
        while (!queue.ending()) {
            if (const auto client = SequencerClient::open(queue))
                while (!queue.ending() && client->serve()) {
                }
            if (!queue.ending())
                queue.rest(kLookSeconds);
        }
    }
};
} // namespace

std::unique_ptr<MidiInputBackend> createAlsaInput() {
    return std::make_unique<AlsaInput>();
}

} // namespace velmora
