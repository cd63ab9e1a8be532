// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/SteadyClock.h"
#include "sound/JackHandle.h"
#include "sound/MessageBytes.h"
#include "sound/MidiBackends.h"
#include "sound/PortNames.h"
#include "sound/SpscRing.h"

#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <thread>

// JACK's own library and not RtMidi: the latter drops what does not fit into one period's buffer (about 80
// messages of 256 frames), lists the ports of a server that has died, and spins for ever once its queue to a
// dead server is full. Here a message that finds no room waits for the next period, the end of the server is
// noticed, and each message keeps its distance in time from the one before.

namespace velmora {

namespace {
constexpr double kDrainSeconds = 0.4; ///< and a few periods more; then the server is stalled

struct JackLibrary : LateLibrary {
    JackLibrary() : LateLibrary(kJackLibrary) {}
    VELMORA_LATE_CALL(jack_activate);
    VELMORA_LATE_CALL(jack_connect);
    VELMORA_LATE_CALL(jack_disconnect);
    VELMORA_LATE_CALL(jack_frame_time);
    VELMORA_LATE_CALL(jack_free);
    VELMORA_LATE_CALL(jack_get_buffer_size);
    VELMORA_LATE_CALL(jack_get_ports);
    VELMORA_LATE_CALL(jack_get_sample_rate);
    VELMORA_LATE_CALL(jack_last_frame_time);
    VELMORA_LATE_CALL(jack_midi_clear_buffer);
    VELMORA_LATE_CALL(jack_midi_event_reserve);
    VELMORA_LATE_CALL(jack_midi_max_event_size);
    VELMORA_LATE_CALL(jack_port_get_buffer);
    VELMORA_LATE_CALL(jack_port_name);
    VELMORA_LATE_CALL(jack_port_register);
    VELMORA_LATE_CALL(jack_set_process_callback);
};

/// Loaded where it is first called: on the back end's thread.
const JackLibrary& jack() {
    static const JackLibrary library;
    return library;
}

/// Our client of one running server, with its one output port.
class JackClient {
public:
    /// Null when no server runs, or JACK's library is not there.
    static std::shared_ptr<JackClient> openAtServer() {
        if (!jack().complete())
            return nullptr;
        auto handle = JackHandle::open(kMidiClientName);
        if (!handle)
            return nullptr;
        auto client = std::make_shared<JackClient>(std::move(handle));
        return client->activate() ? client : nullptr;
    }

    explicit JackClient(std::unique_ptr<JackHandle> handle) : handle_(std::move(handle)) {}
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    [[nodiscard]] bool serverLost() const noexcept { return handle_->serverLost(); }
    [[nodiscard]] std::size_t queued() const noexcept { return queue_.size(); }

    /// @param connection the number that `connect` gave
    bool send(std::uint32_t word, unsigned connection) noexcept {
        const auto use = handle_->use();
        return use && queue_.push({jack().jack_frame_time(handle()), connection, word});
    }

    /// Connects the port to a destination and gives the connection's number; none if that has gone.
    std::optional<unsigned> connect(const std::string& destination) {
        const auto use = handle_->use();
        if (!use)
            return std::nullopt;
        const int result = jack().jack_connect(handle(), jack().jack_port_name(port_), destination.c_str());
        if (result != 0 && result != EEXIST)
            return std::nullopt;
        return connection_.load();
    }

    /// Ends the connection once what was sent on it has left. Messages that a stalled server has not taken by
    /// then are dropped: the next destination must never hear them.
    void disconnect(const std::string& destination) {
        drain();
        ++connection_;
        if (const auto use = handle_->use())
            jack().jack_disconnect(handle(), jack().jack_port_name(port_), destination.c_str());
    }

    /// The inputs of other programs, in JACK's order.
    [[nodiscard]] std::vector<std::string> destinations() const {
        std::vector<std::string> names;
        const auto use = handle_->use();
        if (!use)
            return names;
        const char** ports =
            jack().jack_get_ports(handle(), nullptr, JACK_DEFAULT_MIDI_TYPE, JackPortIsInput);
        if (ports == nullptr)
            return names;
        for (const char** port = ports; *port != nullptr; ++port)
            if (!isOurPort(*port))
                names.emplace_back(*port);
        jack().jack_free(ports);
        return names;
    }

private:
    [[nodiscard]] jack_client_t* handle() const { return handle_->get(); }

    /// Waits until all that was sent has left our port, but never for long.
    void drain() const {
        double period = 0;
        if (const auto use = handle_->use())
            period = static_cast<double>(jack().jack_get_buffer_size(handle())) /
                     jack().jack_get_sample_rate(handle());
        const double deadline = steadySeconds() + kDrainSeconds + 4 * period;
        // What leaves in one period is read by the receiver in that or the next.
        unsigned long enough = periods_ + 2;
        while (!serverLost() && steadySeconds() < deadline && (queue_.size() > 0 || periods_ < enough)) {
            if (queue_.size() > 0)
                enough = periods_ + 2;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    struct Event {
        jack_nframes_t frame; ///< JACK's time of the call that sent it
        unsigned connection;
        std::uint32_t word;
    };

    bool activate() {
        const auto use = handle_->use();
        if (!use)
            return false;
        port_ = jack().jack_port_register(handle(), "Output", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack().jack_set_process_callback(
            handle(),
            [](jack_nframes_t frames, void* self) {
                uncancelled([frames, self] { static_cast<JackClient*>(self)->process(frames); });
                return 0;
            },
            this);
        return port_ != nullptr && jack().jack_activate(handle()) == 0;
    }

    /// On JACK's thread. Realtime-safe: yes.
    void process(jack_nframes_t frames) noexcept {
        void* buffer = jack().jack_port_get_buffer(port_, frames);
        jack().jack_midi_clear_buffer(buffer);
        const jack_nframes_t start = jack().jack_last_frame_time(handle());
        const int last = static_cast<int>(frames) - 1;
        int offset = 0;
        while (const Event* event = queue_.front()) {
            if (event->connection != connection_) {
                queue_.pop();
                continue;
            }
            // A whole period later than it was sent: constant, so that what is heard keeps the spacing of
            // what was sent. A distance of seconds means that the server's clock has jumped; then it goes out
            // at once.
            const int due = static_cast<int>(event->frame + frames - start);
            if (due > last && due < kClockJumpFrames)
                break;
            offset = std::clamp(due > last ? 0 : due, offset, last);
            const auto message = messageBytes(event->word);
            if (jack().jack_midi_max_event_size(buffer) < message.length)
                break;
            auto* place =
                jack().jack_midi_event_reserve(buffer, static_cast<jack_nframes_t>(offset), message.length);
            if (place == nullptr)
                break;
            std::memcpy(place, message.bytes.data(), message.length);
            queue_.pop();
        }
        ++periods_;
    }

    static constexpr int kClockJumpFrames = 96000;

    SpscRing<Event, MidiOutlet::kQueueLength> queue_;
    jack_port_t* port_ = nullptr;
    std::atomic<unsigned long> periods_{0};
    std::atomic<unsigned> connection_{0}; ///< the number of the one that is there or comes next
    std::unique_ptr<JackHandle> handle_;  ///< goes first, and with it the calls of `process`
};

class JackOutlet : public MidiOutlet {
public:
    JackOutlet(std::shared_ptr<JackClient> client, std::string destination, unsigned connection)
        : client_(std::move(client))
        , destination_(std::move(destination))
        , connection_(connection) {}
    ~JackOutlet() override { client_->disconnect(destination_); }
    JackOutlet(const JackOutlet&) = delete;
    JackOutlet& operator=(const JackOutlet&) = delete;

    bool send(std::uint32_t word) noexcept override { return client_->send(word, connection_); }
    [[nodiscard]] std::size_t room() const noexcept override { return kQueueLength - client_->queued(); }
    [[nodiscard]] bool alive() const noexcept override { return !client_->serverLost(); }

private:
    std::shared_ptr<JackClient> client_;
    std::string destination_;
    unsigned connection_;
};

class JackBackend : public MidiBackend {
public:
    std::vector<std::string> destinations() override {
        return connected() ? client_->destinations() : std::vector<std::string>();
    }

    std::unique_ptr<MidiOutlet> open(const std::string& destination) override {
        if (!connected())
            return nullptr;
        const auto connection = client_->connect(destination);
        if (!connection)
            return nullptr;
        return std::make_unique<JackOutlet>(client_, destination, *connection);
    }

private:
    /// True while a server runs, the one of before or another. What an outlet still has of one that has died
    /// takes nothing any more.
    bool connected() {
        if (client_ && client_->serverLost())
            client_.reset();
        if (!client_)
            client_ = JackClient::openAtServer();
        return client_ != nullptr;
    }

    std::shared_ptr<JackClient> client_;
};
} // namespace

std::unique_ptr<MidiBackend> createJackBackend() {
    // A user who runs no server wants none. The option at jack_client_open asks for the same, but not every
    // implementation of the library heeds it.
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    return std::make_unique<JackBackend>();
}

} // namespace velmora
