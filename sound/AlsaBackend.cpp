// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiBackends.h"
#include "sound/PacedOutlet.h"

#include <RtMidi.h>

#include <fcntl.h>
#include <unistd.h>

namespace velmora {

namespace {
/// True if the sequencer can be opened. Asked first, because RtMidi and ALSA print their complaints on the
/// terminal before they can be told not to.
bool sequencerAnswers() {
    const int file = ::open("/dev/snd/seq", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return false;
    ::close(file);
    return true;
}

void ignoreError(RtMidiError::Type, const std::string&, void*) {}

/// Null where there is no sequencer.
std::unique_ptr<RtMidiOut> connectToSequencer() {
    if (!sequencerAnswers())
        return nullptr;
    try {
        auto client = std::make_unique<RtMidiOut>(RtMidi::LINUX_ALSA, kMidiClientName);
        client->setErrorCallback(ignoreError);
        return client;
    } catch (const RtMidiError&) {
        return nullptr;
    }
}

std::vector<std::string> portNames(RtMidiOut& client) {
    std::vector<std::string> names;
    const unsigned count = client.getPortCount();
    for (unsigned port = 0; port < count; ++port)
        names.push_back(client.getPortName(port));
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
        std::shared_ptr<RtMidiOut> client = connectToSequencer();
        if (!client)
            return nullptr;
        const auto names = portNames(*client);
        for (unsigned port = 0; port < names.size(); ++port) {
            if (names[port] != destination)
                continue;
            client->openPort(port, "Output");
            if (!client->isPortOpen())
                return nullptr;
            return std::make_unique<PacedOutlet>([client](std::span<const unsigned char> message) {
                client->sendMessage(message.data(), message.size());
            });
        }
        return nullptr;
    }

private:
    std::unique_ptr<RtMidiOut> lister_;
};
} // namespace

std::unique_ptr<MidiBackend> createAlsaBackend() {
    return std::make_unique<AlsaBackend>();
}

} // namespace velmora
