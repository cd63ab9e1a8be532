// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SettingsStore.h"

#include "base/Files.h"
#include "base/Text.h"

#include <charconv>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kBlanks = " \t\r";

void appendByte(std::string& to, unsigned char byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    to += {'\\', kDigits[byte / 16], kDigits[byte % 16]};
}

/// The text as it stands in a line: without line ends, with no blank that trimming would take, and with the
/// characters of @p special, which would divide the line, in hexadecimal.
std::string escaped(std::string_view text, std::string_view special) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool outerBlank = byte == ' ' && (i == 0 || i + 1 == text.size());
        if (byte < ' ' || byte == 0x7f || byte == '\\' || outerBlank || special.find(text[i]) != special.npos)
            appendByte(line, byte);
        else
            line += text[i];
    }
    return line;
}

/// Nothing if a backslash isn't followed by two hexadecimal digits.
std::optional<std::string> unescaped(std::string_view line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\') {
            text += line[i];
            continue;
        }
        const std::string_view digits = line.substr(i + 1, 2);
        unsigned char byte = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2)
            return std::nullopt;
        text += static_cast<char>(byte);
        i += 2;
    }
    return text;
}

void parseLine(std::string_view line, SettingsMap& values) {
    const auto equals = line.find('=');
    const auto slash = line.substr(0, equals).find('/');
    if (line.starts_with('#') || equals == line.npos || slash == line.npos)
        return;
    auto section = unescaped(trimmed(line.substr(0, slash), kBlanks));
    auto key = unescaped(trimmed(line.substr(slash + 1, equals - slash - 1), kBlanks));
    auto value = unescaped(trimmed(line.substr(equals + 1), kBlanks));
    if (section && key && value)
        values.insert_or_assign({std::move(*section), std::move(*key)}, std::move(*value));
}

/// Keeps other processes that save to the same folder out. Where the file system knows no locks, nobody
/// waits.
class FolderLock {
public:
    explicit FolderLock(const fs::path& folder)
        : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (descriptor_ >= 0)
            flock(descriptor_, LOCK_EX);
    }
    ~FolderLock() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int descriptor_;
};
} // namespace

std::string formatSettings(const SettingsMap& values) {
    std::string text = "# Settings of ";
    text.append(kApplicationName).append(": section/key=value, where \\hh is a byte in hexadecimal\n");
    for (const auto& [place, value] : values) {
        const auto& [section, key] = place;
        text += escaped(section, "#/=") + '/' + escaped(key, "=") + '=' + escaped(value, "") + '\n';
    }
    return text;
}

SettingsMap parseSettings(std::string_view text) {
    SettingsMap values;
    while (!text.empty()) {
        const auto end = text.find('\n');
        parseLine(trimmed(text.substr(0, end), kBlanks), values);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return values;
}

void SettingsStore::SaveSettings(const SettingsMap& changes) {
    for (const auto& [place, value] : changes)
        SaveSetting(place.first, place.second, value);
}

std::string SettingsBatch::GetSetting(std::string_view section, std::string_view key,
                                      std::string_view fallback) const {
    const auto found = values_.find({std::string(section), std::string(key)});
    return found != values_.end() ? found->second : store_.GetSetting(section, key, fallback);
}

void SettingsBatch::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
    values_.insert_or_assign({std::string(section), std::string(key)}, std::string(value));
}

SettingsFile::SettingsFile(fs::path path) : path_(std::move(path)) {
    readFile();
}

std::string SettingsFile::GetSetting(std::string_view section, std::string_view key,
                                     std::string_view fallback) const {
    const SettingsMap::key_type place(section, key);
    for (const SettingsMap* values : {&unsaved_, &stored_})
        if (const auto found = values->find(place); found != values->end())
            return found->second;
    return std::string(fallback);
}

void SettingsFile::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
    SaveSettings({{{std::string(section), std::string(key)}, std::string(value)}});
}

void SettingsFile::SaveSettings(const SettingsMap& changes) {
    for (const auto& [place, value] : changes)
        unsaved_.insert_or_assign(place, value);
    std::error_code ignored;
    fs::create_directories(path_.parent_path(), ignored);
    const FolderLock lock(path_.parent_path());
    if (!readFile())
        return;
    SettingsMap values = unsaved_;
    values.insert(stored_.begin(), stored_.end());
    if (values != stored_ && !replaceFile(path_, formatSettings(values)).empty())
        return;
    stored_ = std::move(values);
    unsaved_.clear();
}

/// False if there is a file that can't be read: it must not be replaced.
bool SettingsFile::readFile() {
    const auto text = readWholeFile(path_);
    std::error_code error;
    if (!text && fs::status(path_, error).type() != fs::file_type::not_found)
        return false;
    stored_ = parseSettings(text.value_or(std::string()));
    return true;
}

} // namespace velmora
