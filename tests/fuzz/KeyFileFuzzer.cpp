// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of keyboard schemes: any bytes give 44 labels of UTF-8, and what is written is read back.
#include "base/Text.h"
#include "keyboard/KeyFile.h"
#include "keyboard/KeyScheme.h"

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
    const KeyScheme read = parseKeyFile({reinterpret_cast<const char*>(data), size});
    KeyScheme trim = read;
    for (std::string& label : trim.labels) {
        expect(textOfLabel(label) == label && label.find('\n') == label.npos);
        label = trimmed(label);
    }
    const std::string written = formatKeyFile(read);
    expect(formatKeyFile(trim) == written);
    // What begins with a byte order mark loses it once more.
    if (!written.starts_with("\xEF\xBB\xBF"))
        expect(parseKeyFile(written) == trim);
    if (const auto key = read.keyOf(read.labels.back()))
        expect(read.labels[static_cast<std::size_t>(*key)] == read.labels.back());
    return 0;
}
