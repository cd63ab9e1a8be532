// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace velmora {

/// The one MIDI output that everything sounds through. All calls come from the interface thread and none
/// waits.
class MidiPort {
public:
    static constexpr int kMapper = -1; ///< the device index of "MIDI Mapper"
    static constexpr int kOk = 0;

    virtual ~MidiPort() = default;

    /// Number of output devices; devices come and go while the program runs.
    [[nodiscard]] virtual int deviceCount() = 0;
    /// Name of device 0 to deviceCount() - 1; blank for any other index.
    [[nodiscard]] virtual std::string deviceName(int device) = 0;
    /// Opens a device by index, or the mapper. Returns kOk or another result code.
    virtual int open(int device) = 0;
    /// Silences and closes; harmless when closed. Returns kOk or another result code.
    virtual int close() = 0;
    /// Ends every sounding note; instruments and controllers stay as they are.
    virtual void reset() = 0;
    /// Sends a packed short message: status in bits 0 to 7, first data byte in 8 to 15, second in 16 to 23.
    /// A closed port ignores it, and so does any port whose data bytes would be no MIDI (bit 7 set).
    virtual void send(std::uint32_t word) = 0;
};

} // namespace velmora
