// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyFile.h"

#include "base/Files.h"
#include "base/Text.h"
#include "base/TextCoding.h"
#include "keyboard/KeyScheme.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace velmora {

namespace {
using namespace std::string_view_literals;

constexpr std::string_view kExtension = ".key";
/// Bytes of a label, a hundred times what anyone could read on a key. What is longer is no scheme.
constexpr std::size_t kLongestLabel = 4096;

/// The first lines, where there are as many; a last one without an end counts.
struct FirstLines {
    std::array<std::string_view, kPianoKeys> lines;
    std::size_t count = 0;

    explicit FirstLines(std::string_view text) {
        while (count < lines.size() && !text.empty()) {
            const std::size_t end = text.find('\n');
            std::string_view line = text.substr(0, end);
            text.remove_prefix(end == text.npos ? text.size() : end + 1);
            if (end != text.npos && line.ends_with('\r'))
                line.remove_suffix(1);
            lines[count++] = line;
        }
    }
    [[nodiscard]] std::span<const std::string_view> all() const { return std::span(lines).first(count); }
};

KeyScheme labelsOf(std::string_view text) {
    const bool utf8 = isUtf8(text);
    const FirstLines read(text);
    KeyScheme scheme;
    std::string line; // stays as it was where there is nothing left to read
    for (std::size_t key = 0; key < scheme.labels.size(); ++key) {
        if (key < read.count)
            line = utf8 ? std::string(read.lines[key]) : fromWindows1252(read.lines[key]);
        scheme.labels[key] = line;
    }
    return scheme;
}

std::string_view withoutMark(std::string_view bytes) {
    return bytes.starts_with(kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes;
}

/// Why these are no bytes of a key file, as the end of a sentence; nothing if they may be.
std::string_view strangeness(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("\xFE\xFF"sv))
        return "is written in UTF-16. Save it as UTF-8 and open it again.";
    if (bytes.find('\0') != bytes.npos)
        return "is no text, so it can't be a keyboard scheme.";
    const FirstLines read(bytes);
    if (std::ranges::any_of(read.all(), [](std::string_view line) { return line.size() > kLongestLabel; }))
        return "is no keyboard scheme: a line of it is far too long for the label of a key.";
    return {};
}

std::string sentence(const std::filesystem::path& path, std::string_view rest) {
    return "The keyboard scheme \"" + path.string() + "\" " + std::string(rest);
}
} // namespace

KeyScheme parseKeyFile(std::string_view bytes) {
    return labelsOf(withoutMark(bytes));
}

std::string formatKeyFile(const KeyScheme& scheme) {
    std::string text;
    for (const std::string& label : scheme.labels)
        text.append(trimmed(label)).append("\r\n");
    return text;
}

std::string textOfLabel(std::string_view bytes) {
    return isUtf8(bytes) ? std::string(bytes) : fromWindows1252(bytes);
}

std::string OpenKeyScheme(const std::filesystem::path& path, KeyScheme& scheme) {
    const auto bytes = readWholeFile(path);
    if (!bytes)
        return sentence(path, "can't be read. Is it there, a file, and yours to read?");
    if (const auto strange = strangeness(*bytes); !strange.empty())
        return sentence(path, strange);
    scheme = parseKeyFile(*bytes);
    return {};
}

std::string SaveKeyScheme(const std::filesystem::path& path, const KeyScheme& scheme) {
    return replaceFile(path, formatKeyFile(scheme));
}

std::string keyFileName(std::string name) {
    name = trimmed(name);
    if (name.ends_with('\0'))
        name.pop_back();
    if (!toLower(name).ends_with(kExtension))
        name += kExtension;
    return name;
}

} // namespace velmora
