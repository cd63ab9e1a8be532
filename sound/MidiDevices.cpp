// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiDevices.h"

#include "base/SteadyClock.h"
#include "sound/PortNames.h"
#include "sound/ShortMessage.h"

namespace velmora {

MidiDevices::MidiDevices(SoftSynth& synth, std::vector<std::unique_ptr<MidiBackend>> backends)
    : synth_(synth)
    , askedAt_(steadySeconds()) {
    for (auto& backend : backends)
        backends_.push_back(std::make_unique<BackendThread>(std::move(backend)));
}

MidiDevices::~MidiDevices() {
    close();
}

int MidiDevices::deviceCount() {
    giveUpLostOutlet();
    const double now = steadySeconds();
    if (!listed_)
        for (auto& backend : backends_)
            backend->waitForFirstList(now + kFirstListSeconds);
    listed_ = true;
    takeOverLists();
    if (now - askedAt_ >= kListSeconds) {
        askedAt_ = now;
        for (auto& backend : backends_)
            backend->refresh();
    }
    return static_cast<int>(devices_.size());
}

void MidiDevices::takeOverLists() {
    devices_.clear();
    if (synth_.available())
        devices_.push_back({kBuiltIn, kSynthName, {}});
    for (std::size_t i = 0; i < backends_.size(); ++i)
        for (auto& name : backends_[i]->destinations())
            if (!isLoopback(name))
                devices_.push_back({static_cast<int>(i), std::move(name), {}});
    std::vector<std::string> fullNames;
    for (const auto& device : devices_)
        fullNames.push_back(device.fullName);
    auto shortNames = shortPortNames(fullNames);
    for (std::size_t i = 0; i < devices_.size(); ++i)
        devices_[i].shortName = std::move(shortNames[i]);
}

std::string MidiDevices::deviceName(int device) {
    if (!listed_)
        static_cast<void>(deviceCount());
    if (device < 0 || device >= static_cast<int>(devices_.size()))
        return {};
    return devices_[static_cast<std::size_t>(device)].shortName;
}

int MidiDevices::open(int device) {
    close();
    if (!listed_)
        static_cast<void>(deviceCount());
    const int index = device == kMapper ? 0 : device;
    if (index < 0 || index >= static_cast<int>(devices_.size()))
        return kNoSuchDevice;
    const Device& chosen = devices_[static_cast<std::size_t>(index)];
    if (chosen.backend != kBuiltIn)
        return openExternal(chosen);
    synthOpen_ = synth_.available();
    return synthOpen_ ? kOk : kRefused;
}

int MidiDevices::openExternal(const Device& device) {
    auto [result, outlet] = backends_[static_cast<std::size_t>(device.backend)]->open(device.fullName);
    if (result == BackendThread::Result::TimedOut)
        return kTimedOut;
    if (result == BackendThread::Result::Refused)
        return kRefused;
    outlet_ = std::move(outlet);
    outletBackend_ = device.backend;
    sounding_ = {};
    return kOk;
}

int MidiDevices::close() {
    reset();
    synthOpen_ = false;
    if (outlet_)
        backends_[static_cast<std::size_t>(outletBackend_)]->release(std::move(outlet_));
    return kOk;
}

/// A back end connects to a new server only after the outlet to the old one is closed.
void MidiDevices::giveUpLostOutlet() {
    if (outlet_ && !outlet_->alive())
        backends_[static_cast<std::size_t>(outletBackend_)]->release(std::move(outlet_));
}

void MidiDevices::reset() {
    if (synthOpen_)
        synth_.reset(steadySeconds());
    if (outlet_)
        for (const auto word : sounding_.silencingWords())
            sendToOutlet(word);
}

void MidiDevices::send(std::uint32_t word) {
    if (!shortmessage::isValid(word))
        return;
    if (synthOpen_)
        synth_.send(word, steadySeconds());
    else if (outlet_)
        sendToOutlet(word);
}

void MidiDevices::sendToOutlet(std::uint32_t word) {
    const bool startsNote = shortmessage::status(word) == 0x90 && shortmessage::data2(word) > 0;
    if (startsNote && outlet_->room() <= kReservedRoom)
        return;
    // A note-off that was dropped stays noted, so that the next reset sends it again.
    if (outlet_->send(word))
        sounding_.sent(word);
}

} // namespace velmora
