// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of MIDI files: whatever the bytes, messages are valid, in order, and no more than there are
// bytes for.
#include "score/MidiFileReader.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velmora;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MidiMusic music = readMidi({reinterpret_cast<const char*>(data), size});
    expect(music.error.empty() || (music.messages.empty() && music.seconds == 0));
    expect(music.messages.size() <= size / 2);
    expect(std::ranges::is_sorted(music.messages, {}, &TimedMessage::seconds));
    expect(music.seconds >= 0 && music.seconds <= kLongestMidi);
    for (const TimedMessage& one : music.messages)
        expect(shortmessage::isValid(one.word) && !one.reset && one.seconds >= 0 &&
               one.seconds <= music.seconds);
    return 0;
}
