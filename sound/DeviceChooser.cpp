// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/DeviceChooser.h"

#include "sound/ShortMessage.h"

#include <algorithm>
#include <utility>

namespace velmora {

DeviceChooser::DeviceChooser(MidiPort& port, DevicesKey key) : port_(port), key_(std::move(key)) {}

void DeviceChooser::openPort(int device) {
    MidiResult = port_.open(device);
    const bool asChosen = MidiResult == MidiPort::kOk && device == MidiDevice;
    openName_ = asChosen && device != MidiPort::kMapper ? port_.deviceName(device) : std::string();
}

void DeviceChooser::closePort() {
    MidiResult = port_.close();
    openName_.clear();
}

void DeviceChooser::resetAndClose() {
    port_.reset();
    closePort();
}

std::vector<std::string> DeviceChooser::deviceNames() {
    std::vector<std::string> names;
    const int count = port_.deviceCount();
    names.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int device = 0; device < count; ++device)
        names.push_back(port_.deviceName(device));
    return names;
}

/// False if there is no device of that name. Otherwise it is the chosen one, wherever it stands now.
bool DeviceChooser::followTo(const std::string& name, std::span<const std::string> devices) {
    const auto found = std::ranges::find(devices, name);
    if (found == devices.end())
        return false;
    const auto place = static_cast<int>(found - devices.begin());
    if (place != MidiDevice) {
        MidiDevice = place;
        key_.write(place);
    }
    return true;
}

/// False if the open device has gone, and the mapper now stands in for it.
bool DeviceChooser::followOpen(std::span<const std::string> devices) {
    if (openName_.empty() || followTo(openName_, devices))
        return true;
    lostName_ = openName_;
    fallBack();
    return false;
}

void DeviceChooser::takeFromSettings(int otherwise) {
    MidiDevice = key_.read().value_or(otherwise);
    onMapper_ = false;
    lostName_.clear();
}

void DeviceChooser::openAtActivation() {
    takeFromSettings(MidiPort::kMapper);
    openPort(MidiDevice);
    if (MidiResult == MidiPort::kOk) {
        port_.send(shortmessage::kDrumBank);
        return;
    }
    closePort();
    openPort(MidiDevice + 1);
    if (MidiResult != MidiPort::kOk && MidiDevice != MidiPort::kMapper)
        fallBack();
}

void DeviceChooser::fallBack() {
    resetAndClose();
    openPort(MidiPort::kMapper);
    onMapper_ = true;
}

DeviceChooser::Reopened DeviceChooser::reopenIfChanged() {
    if (key_.read().value_or(MidiPort::kMapper) == MidiDevice) {
        const std::vector<std::string> devices = deviceNames();
        if (!followOpen(devices))
            return Reopened::ByMapper;
        if (lostName_.empty() || !followTo(lostName_, devices))
            return Reopened::No;
    }
    return Device_Click() ? Reopened::ByMapper : Reopened::AsChosen;
}

bool DeviceChooser::Device_Click() {
    // Its own default: the first device, where an activation takes the mapper.
    takeFromSettings(0);
    resetAndClose();
    openPort(MidiDevice);
    if (MidiResult != MidiPort::kOk && MidiDevice < kRetriedBelow) {
        resetAndClose();
        openPort(MidiDevice + 1);
        resetAndClose();
        openPort(MidiDevice);
        if (MidiResult != MidiPort::kOk) {
            fallBack();
            return true;
        }
    }
    if (MidiResult == MidiPort::kOk)
        port_.send(shortmessage::kDrumBank);
    return false;
}

bool DeviceChooser::choose(int item) {
    key_.write(item - 1);
    return Device_Click();
}

int DeviceChooser::chooseOrNext(int item) {
    for (const int device : {item - 1, item}) {
        key_.write(device);
        takeFromSettings(device);
        resetAndClose();
        openPort(MidiDevice);
        if (MidiResult == MidiPort::kOk)
            break;
    }
    if (MidiResult != MidiPort::kOk)
        fallBack();
    return onMapper_ ? 0 : MidiDevice + 1;
}

void DeviceChooser::close() {
    resetAndClose();
}

DeviceChooser::List DeviceChooser::list() {
    const std::vector<std::string> devices = deviceNames();
    const int count = static_cast<int>(devices.size());
    List shown{{kMapperName}, 0};
    shown.texts.insert(shown.texts.end(), devices.begin(), devices.end());
    auto chosen = key_.read();
    if (!chosen) {
        // Another device may be one that makes no sound. Until the user chooses it, the mapper sounds.
        chosen = count > 1 ? MidiPort::kMapper : count - 1;
        key_.write(*chosen);
    }
    if (*chosen == MidiDevice)
        chosen = followOpen(devices) && !onMapper_ ? MidiDevice : MidiPort::kMapper;
    if (*chosen >= MidiPort::kMapper && *chosen < count)
        shown.item = *chosen + 1;
    return shown;
}

std::optional<DeviceChooser::Message> DeviceChooser::startUpCheck() {
    if (port_.deviceCount() > 0)
        return std::nullopt;
    return Message{"Velmora - Error", "Unable to detect any midi output devices.\n\nTerminating..."};
}

} // namespace velmora
