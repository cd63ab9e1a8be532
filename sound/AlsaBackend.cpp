// SPDX-License-Identifier: GPL-2.0-or-later
#include "LateNames.h"
#include "base/LateLibrary.h"
#include "sound/AlsaSequencer.h"
#include "sound/MidiBackends.h"
#include "sound/PacedOutlet.h"

#include <RtMidi.h>
#include <rtmidi_c.h>

namespace velmora {

namespace {
struct RtMidiLibrary : LateLibrary {
    RtMidiLibrary() : LateLibrary(kRtMidiLibrary) {}
    VELMORA_LATE_CALL(rtmidi_out_create);
    VELMORA_LATE_CALL(rtmidi_out_free);
    VELMORA_LATE_CALL(rtmidi_out_send_message);
};

/// Loaded where it is first called: on the back end's thread.
const RtMidiLibrary& library() {
    static const RtMidiLibrary only;
    return only;
}

void ignoreError(RtMidiError::Type, const std::string&, void*) {}

/// A client of the sequencer. RtMidi's functions for C make it, as they can be called late; what it is has
/// virtual functions, which need no linking either.
class Client {
public:
    Client() : handle_(library().rtmidi_out_create(RTMIDI_API_LINUX_ALSA, kMidiClientName)) {
        if (handle_->ok)
            midi().setErrorCallback(ignoreError, nullptr);
    }
    ~Client() { library().rtmidi_out_free(handle_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] bool connected() const { return handle_->ok; }
    [[nodiscard]] RtMidi& midi() const { return *static_cast<RtMidiOut*>(handle_->ptr); }
    void send(std::span<const unsigned char> message) const {
        library().rtmidi_out_send_message(handle_, message.data(), static_cast<int>(message.size()));
    }

private:
    RtMidiOutPtr handle_;
};

/// Null where there is no sequencer.
std::unique_ptr<Client> connectToSequencer() {
    if (!sequencerAnswers() || !library().complete())
        return nullptr;
    auto client = std::make_unique<Client>();
    return client->connected() ? std::move(client) : nullptr;
}

std::vector<std::string> portNames(const Client& client) {
    std::vector<std::string> names;
    const unsigned count = client.midi().getPortCount();
    for (unsigned port = 0; port < count; ++port)
        names.push_back(client.midi().getPortName(port));
    return names;
}

class AlsaBackend : public MidiBackend {
public:
    std::vector<std::string> destinations() override {
        if (!lister_)
            lister_ = connectToSequencer();
        if (!lister_)
            return {};
        auto names = portNames(*lister_);
        // A port that goes while they are counted leaves a blank name.
        std::erase_if(names, [](const std::string& name) {
            return name.empty() || name.starts_with(std::string(kMidiClientName) + ':');
        });
        return names;
    }

    std::unique_ptr<MidiOutlet> open(const std::string& destination) override {
        std::shared_ptr<Client> client = connectToSequencer();
        if (!client)
            return nullptr;
        const auto names = portNames(*client);
        for (unsigned port = 0; port < names.size(); ++port) {
            if (names[port] != destination)
                continue;
            client->midi().openPort(port, "Output");
            if (!client->midi().isPortOpen())
                return nullptr;
            return std::make_unique<PacedOutlet>(
                [client](std::span<const unsigned char> message) { client->send(message); });
        }
        return nullptr;
    }

private:
    std::unique_ptr<Client> lister_;
};
} // namespace

std::unique_ptr<MidiBackend> createAlsaBackend() {
    return std::make_unique<AlsaBackend>();
}

} // namespace velmora
