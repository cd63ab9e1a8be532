// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/BackendThread.h"
#include "sound/MidiPort.h"
#include "sound/SoftSynth.h"
#include "sound/SoundingNotes.h"

#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// The MIDI output of the program: the built-in synthesizer as device 0 while it is available, and after it
/// every destination of the MIDI back ends, loopbacks left out. The mapper is the first device of the list.
///
/// All calls come from the interface thread. Only `open` waits for another process, half a second at most,
/// and the first `deviceCount` for the first lists; `send` does not wait, allocate or lock.
class MidiDevices final : public MidiPort {
public:
    /// Result codes beside kOk.
    static constexpr int kNoSuchDevice = 2; ///< no device has this index
    static constexpr int kRefused = 4;      ///< the device has gone, or its system refuses it
    static constexpr int kTimedOut = 7;     ///< the system of the device does not answer

    static constexpr const char* kSynthName = "Velmora Synthesizer";
    static constexpr double kFirstListSeconds = 0.25; ///< longest wait of the first `deviceCount`
    static constexpr double kListSeconds = 0.5;       ///< lists are not asked for more often than this

    /// @param synth must outlive this object
    explicit MidiDevices(SoftSynth& synth) : MidiDevices(synth, createMidiBackends()) {}
    MidiDevices(SoftSynth& synth, std::vector<std::unique_ptr<MidiBackend>> backends);
    ~MidiDevices() override;

    /// Takes over the newest lists, and has new ones made for the next call: a device that comes or goes is
    /// seen at the second call after it. Device indices of all other functions mean the list as of the last
    /// call.
    [[nodiscard]] int deviceCount() override;
    /// At most `kPortNameLength` characters; no two devices have the same.
    [[nodiscard]] std::string deviceName(int device) override;
    /// Closes first if open.
    int open(int device) override;
    int close() override;
    /// Sends an external device the note-offs (and pedals up) of what still sounds on it, and nothing else.
    void reset() override;
    /// Words to a device that is lost or takes nothing any more are dropped, note-ons before anything else.
    void send(std::uint32_t word) override;

private:
    static constexpr int kBuiltIn = -1;
    /// Room in an outlet's queue that note-ons leave for note-offs.
    static constexpr std::size_t kReservedRoom = MidiOutlet::kQueueLength / 4;

    struct Device {
        int backend; ///< index into backends_, or kBuiltIn
        std::string fullName;
        std::string shortName;
    };

    void takeOverLists();
    void giveUpLostOutlet();
    int openExternal(const Device& device);
    void sendToOutlet(std::uint32_t word);

    SoftSynth& synth_;
    std::vector<std::unique_ptr<BackendThread>> backends_;
    std::vector<Device> devices_;
    double askedAt_ = 0;
    bool listed_ = false;

    bool synthOpen_ = false;
    int outletBackend_ = 0;
    std::unique_ptr<MidiOutlet> outlet_; ///< there while an external device is open and not lost
    SoundingNotes sounding_;             ///< on outlet_
};

} // namespace velmora
