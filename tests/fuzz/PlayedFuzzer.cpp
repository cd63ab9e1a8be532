// SPDX-License-Identifier: GPL-2.0-or-later
// Any bytes as a journal of what was played: events within their ranges, and notes that end after they begin.
#include "keyboard/PlayedJournal.h"
#include "keyboard/PlayedNoteBook.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const auto events = parseJournal(std::string_view(reinterpret_cast<const char*>(data), size));
    if (parseJournal(journalBytes(events)).size() != events.size())
        std::abort();
    PlayedNoteBook book;
    const auto recent = recentOf(events, 1'700'000'000);
    for (const PlayedEvent& event : recent)
        book.take(event);
    for (const PlayedNote& note : book.notes(1'700'000'000))
        if (note.end < note.onset || note.note > 127 || note.channel > 15)
            std::abort();
    return 0;
}
