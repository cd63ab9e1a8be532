// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of lyrics files: whatever the bytes, values are numbers and UTF-8, and what is written is read
// back.
#include "base/TextCoding.h"
#include "notation/LyricsExtras.h"
#include "notation/LyricsFile.h"
#include "notation/ScoreSetup.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velmora;
using namespace velmora::notation;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}

bool isWords(std::string_view text) {
    return isUtf8(text) && text.find('\n') == text.npos;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const LyricsFile read = parseLyrics({reinterpret_cast<const char*>(data), size});
    expect(isWords(read.title.value_or("")) && isWords(read.text1.value_or("")));
    for (const LyricsItem& item : read.items) {
        expect(isWords(item.line) && isWords(item.font) && isWords(item.text));
        expect(std::isfinite(item.left) && std::isfinite(item.top) && std::isfinite(item.y) &&
               std::isfinite(item.size));
    }
    const std::string written = serializeLyrics(read);
    const LyricsFile again = parseLyrics(written);
    expect(again.items.size() == read.items.size());
    for (std::size_t i = 0; i < read.items.size(); ++i)
        expect(again.items[i].line == read.items[i].line && again.items[i].text == read.items[i].text &&
               again.items[i].page == read.items[i].page);
    expect(serializeLyrics(again) == written);
    ScoreSetup setup;
    takeExtras(read.extras, setup);
    expect(isWords(setup.composer) && isWords(setup.tempoWords));
    for (const std::string& verse : setup.verses)
        expect(isWords(verse));
    const std::string extras = extrasOf(setup);
    ScoreSetup same;
    takeExtras(extras, same);
    expect(extrasOf(same) == extras);
    return 0;
}
