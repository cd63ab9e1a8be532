// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/PortNames.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {
/// Bytes of the well-formed UTF-8 character that the text starts with; 0 where its bytes are broken.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0U) != 0x80)
            return 0;
    const bool overlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool surrogate = lead == 0xED && byte(1) >= 0xA0;
    const bool beyond = lead == 0xF4 && byte(1) >= 0x90;
    return overlong || surrogate || beyond ? 0 : length;
}

std::string clean(std::string_view text) {
    std::string cleaned;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        const auto first = static_cast<unsigned char>(text[0]);
        if (length == 0)
            cleaned += '?';
        else if (length == 1 && (first < 0x20 || first == 0x7F))
            cleaned += ' ';
        else
            cleaned += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return cleaned;
}

/// The first `characters` characters of well-formed UTF-8, without a blank at the end.
std::string cut(std::string_view text, std::size_t characters) {
    std::size_t end = 0;
    for (; characters > 0 && end < text.size(); --characters)
        end += characterLength(text.substr(end));
    while (end > 0 && text[end - 1] == ' ')
        --end;
    return std::string(text.substr(0, end));
}

std::string_view withoutRepeatedClient(std::string_view fullName) {
    const auto colon = fullName.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return fullName;
    const auto port = fullName.substr(colon + 1);
    return port.starts_with(fullName.substr(0, colon)) ? port : fullName;
}
} // namespace

std::string shortPortName(std::string_view fullName) {
    return cut(clean(withoutRepeatedClient(fullName)), kPortNameLength);
}

// PipeWire names the same port to JACK's clients after its own: "Midi-Bridge:Midi Through:(playback_0) ...".
bool isLoopback(std::string_view fullName) {
    return fullName.find("Midi Through") != std::string_view::npos;
}

bool isOurPort(std::string_view fullName) {
    constexpr std::string_view kOurs = "Velmora";
    if (!fullName.starts_with(kOurs))
        return false;
    fullName.remove_prefix(kOurs.size());
    if (fullName.starts_with('-')) // the server tells clients of one name apart by a number
        fullName.remove_prefix(std::min(fullName.find_first_not_of("0123456789", 1), fullName.size()));
    return fullName.starts_with(':') || fullName.starts_with(" Input");
}

bool bridgesSequencer(std::string_view fullName, std::string_view alias) {
    constexpr std::array<std::string_view, 4> kBridges{"Midi-Bridge:", "a2j:", "a2jmidid:", "alsa_midi:"};
    if (std::ranges::any_of(kBridges, [&](auto bridge) { return fullName.starts_with(bridge); }))
        return true;
    // The server itself bridges the sequencer or takes the devices for itself, past the sequencer; then their
    // aliases tell the card.
    return fullName.starts_with("system:midi_") && alias.find("in-hw-") == std::string_view::npos;
}

std::vector<std::string> shortPortNames(std::span<const std::string> fullNames) {
    std::vector<std::string> names;
    names.reserve(fullNames.size());
    for (const auto& fullName : fullNames) {
        const std::string plain = shortPortName(fullName);
        std::string name = plain;
        for (int number = 2; std::ranges::find(names, name) != names.end(); ++number) {
            const std::string ending = ' ' + std::to_string(number);
            name = cut(plain, kPortNameLength - ending.size()) + ending;
        }
        names.push_back(std::move(name));
    }
    return names;
}

} // namespace velmora
