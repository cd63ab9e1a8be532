// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiPort.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// The settings key `Devices`: index of the chosen MIDI device, -1 for the mapper.
struct DevicesKey {
    std::function<std::optional<int>()> read; ///< none where the key is missing
    std::function<void(int)> write;
};

/// The rules by which the MIDI output is opened and its device is chosen. It shows nothing itself: what the
/// list or a message box should show comes back. All calls come from the interface thread.
class DeviceChooser {
public:
    static constexpr const char* kMapperName = "MIDI Mapper";

    /// @param port must outlive this object
    DeviceChooser(MidiPort& port, DevicesKey key);

    /// Opens the device of the settings (the mapper where there is none) when the composing window is first
    /// activated, and sends the drum bank. Where that device fails the one after it is opened instead, and
    /// nothing is sent; where that fails, too, the mapper, or a device that has gone would leave silence.
    void openAtActivation();

    /// At a later activation: presses `Device_Click` if the settings name another device than is open, or if
    /// the chosen one had gone and is back. If it has gone by now, the mapper is opened in its place.
    enum class Reopened { No, AsChosen, ByMapper };
    Reopened reopenIfChanged();

    /// Opens the device of the settings anew (device 0 where there is none) and sends the drum bank. Where it
    /// fails and is below 9, the device after it is opened and closed, which frees a device that was left
    /// busy, and the chosen one tried again; then the mapper. Where it is 9 or above the port stays closed.
    /// True if it fell back to the mapper: the caller sets `Combo2` to item 0.
    [[nodiscard]] bool Device_Click();

    /// The user's choice in `Combo2`: item 0 is the mapper. Writes the key, then as `Device_Click`.
    [[nodiscard]] bool choose(int item);

    /// The user's choice in the keyboard's `Combo1`: writes the key and opens the device; where that fails,
    /// the one after it, which then is the chosen one; where that fails, too, the mapper. Nothing is sent.
    /// @return the item that the list is to show
    [[nodiscard]] int chooseOrNext(int item);

    /// Silences and closes the port.
    void close();

    struct List {
        std::vector<std::string> texts; ///< "MIDI Mapper", then each device's name
        int item;                       ///< the chosen one; 0 where that is not there or the mapper stands in
    };
    /// What `Combo2` shows. Where the key is missing it is written with the number of devices less one, which
    /// is the only device's index, but with the mapper's where there are more. The key follows the open
    /// device where others come or go before it. If that has gone, the mapper is opened in its place. One
    /// that is back waits for an activation: what plays through the mapper is not torn from it.
    [[nodiscard]] List list();

    struct Message {
        std::string title;
        std::string text;
    };
    /// None if there is a device. Otherwise what a message box says before the program ends.
    [[nodiscard]] std::optional<Message> startUpCheck();

    [[nodiscard]] int midiDevice() const { return MidiDevice; }
    [[nodiscard]] int midiResult() const { return MidiResult; }

private:
    static constexpr int kRetriedBelow = 9;

    void openPort(int device);
    void closePort();
    void resetAndClose();
    void fallBack();
    void takeFromSettings(int otherwise);
    [[nodiscard]] std::vector<std::string> deviceNames();
    [[nodiscard]] bool followTo(const std::string& name, std::span<const std::string> devices);
    [[nodiscard]] bool followOpen(std::span<const std::string> devices);

    MidiPort& port_;
    DevicesKey key_;
    int MidiDevice = MidiPort::kMapper; ///< from the settings, also where another one was opened instead
    int MidiResult = MidiPort::kOk;     ///< of the last open or close
    std::string openName_;              ///< of the chosen device while it is open; blank otherwise
    std::string lostName_;              ///< of the chosen device where it went while it was open
    bool onMapper_ = false;             ///< the mapper stands in for the chosen device
};

} // namespace velmora
