// SPDX-License-Identifier: GPL-2.0-or-later
// Any bytes as a media command: understood, or refused in one short line; what is understood in one case of
// letters and with some blanks is so in another.
#include "base/Text.h"
#include "studio/MediaCommand.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const MediaReading read = readMediaCommand(line);
    expect(read.command.has_value() == read.error.empty());
    expect(read.error.size() <= kMediaErrorBytes && read.error.find_first_of("\r\n") == read.error.npos);
    const MediaReading other = readMediaCommand("  " + toLower(std::string(line)) + "\t");
    expect(other.command.has_value() == read.command.has_value());
    if (!read.command)
        return 0;
    const MediaCommand& command = *read.command;
    expect(other.command->act == command.act);
    expect(other.command->alias == toLower(command.alias));
    expect(other.command->path == toLower(command.path));
    expect(other.command->row.size() == command.row.size());
    expect(command.row.size() != 1);
    expect(std::isfinite(command.seconds) && command.seconds >= 0);
    const bool hasAlias = command.act != MediaAct::CloseAll && command.act != MediaAct::WaitSeconds;
    expect(hasAlias == !command.alias.empty());
    const std::string sentence = mediaSentenceHolding("It is " + command.path + ".", command.path);
    expect(sentence.size() <= kMediaErrorBytes && sentence.find('\n') == sentence.npos);
    return 0;
}
