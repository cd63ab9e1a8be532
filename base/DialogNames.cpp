// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/DialogNames.h"

#include "base/Text.h"

#include <QFile>

#include <algorithm>

namespace velmora {

namespace fs = std::filesystem;

namespace {
/// Stands for the byte 0; only bytes from 0x80 are ever mapped.
constexpr char16_t kByteBase = 0xF700;

bool carriesByte(QChar c) {
    return c.unicode() >= kByteBase + 0x80 && c.unicode() <= kByteBase + 0xFF;
}

std::vector<std::string> patternsOf(const FileFilter& filter) {
    std::vector<std::string> patterns;
    std::string_view rest = filter.pattern;
    while (!rest.empty()) {
        const auto end = rest.find(';');
        const std::string_view pattern = trimmed(rest.substr(0, end));
        if (!pattern.empty())
            patterns.emplace_back(pattern);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    }
    return patterns;
}

/// Characters that a bracket of a name filter can't hold; any one character stands for them.
void replaceForbidden(QString& pattern) {
    constexpr QStringView kAllowed = u"_.,*?+;#-[]@{}/!<>$%&=^~:|";
    for (QChar& c : pattern) {
        const bool letterOrDigit = c.unicode() < 128 && c.isLetterOrNumber();
        if (!letterOrDigit && !kAllowed.contains(c))
            c = u'?';
    }
}

/// Both cases by name for the dialogs of platforms, which know none of Qt's leniency.
QStringList inBothCases(const FileFilter& filter) {
    QStringList both;
    for (const std::string& bytes : patternsOf(filter)) {
        QString pattern = QString::fromStdString(bytes);
        replaceForbidden(pattern);
        for (const QString& form : {pattern, pattern.toLower(), pattern.toUpper()})
            if (!both.contains(form))
                both.append(form);
    }
    return both.isEmpty() ? QStringList("*") : both;
}

/// The bytes of the character at the head of the text; one byte if there is no whole one.
std::string_view headOf(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return bytes.substr(0, length);
}

/// The one character that these bytes are, or a blank text.
QString character(std::string_view bytes) {
    const QByteArray raw(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const QString text = QString::fromUtf8(raw);
    return text.toUtf8() == raw && !std::ranges::any_of(text, carriesByte) ? text : QString();
}
} // namespace

QStringList nameFilters(std::span<const FileFilter> filters) {
    QStringList texts;
    for (const FileFilter& filter : filters) {
        QString label = QString::fromStdString(filter.label);
        if (label.trimmed().isEmpty())
            label = QString::fromStdString(filter.pattern) + ' ';
        const QString bracket = '(' + inBothCases(filter).join(' ') + ')';
        // Dialogs show labels without their outer blanks, so one more tells twins apart unseen.
        while (texts.contains(label + bracket))
            label += ' ';
        texts.append(label + bracket);
    }
    return texts;
}

std::string extensionOf(const FileFilter& filter) {
    for (const std::string& pattern : patternsOf(filter))
        if (pattern.starts_with("*.") && pattern.size() > 2 &&
            pattern.find_first_of("*?[", 1) == pattern.npos)
            return toLower(pattern.substr(1));
    return {};
}

std::string withPoint(std::string_view extension) {
    const bool lacksPoint = !extension.empty() && !extension.starts_with('.');
    return (lacksPoint ? "." : "") + std::string(extension);
}

std::string withExtensionIfNone(std::string path, std::string_view extension) {
    if (!fs::path(path).has_extension())
        path += extension;
    return path;
}

StartPlace startPlace(std::string_view start, std::span<const FileFilter> filters) {
    const fs::path path(start);
    std::error_code ignored;
    if (path.empty() || fs::is_directory(path, ignored))
        return {path, {}};
    const std::string extension = toLower(path.extension().string());
    const bool isOfAType = !extension.empty() && std::ranges::any_of(filters, [&](const FileFilter& filter) {
        return extensionOf(filter) == extension;
    });
    if (isOfAType || fs::exists(path, ignored))
        return {path.parent_path(), path.filename().string()};
    return {path, {}};
}

QString nearestFolder(const fs::path& folder) {
    std::error_code error;
    fs::path path = fs::absolute(folder.empty() ? fs::path(".") : folder, error).lexically_normal();
    while (path.has_relative_path() && !(fs::is_directory(path, error) && isPlainText(path.native())))
        path = path.parent_path();
    return QFile::decodeName(path.c_str());
}

QString textOfBytes(std::string_view bytes) {
    QString text;
    while (!bytes.empty()) {
        const std::string_view head = headOf(bytes);
        const QString whole = character(head);
        if (whole.isEmpty())
            text += QChar(static_cast<char16_t>(kByteBase + static_cast<unsigned char>(bytes.front())));
        else
            text += whole;
        bytes.remove_prefix(whole.isEmpty() ? 1 : head.size());
    }
    return text;
}

std::string bytesOfText(const QString& text) {
    std::string bytes;
    for (qsizetype at = 0; at < text.size();) {
        if (carriesByte(text[at])) {
            bytes += static_cast<char>(text[at++].unicode() - kByteBase);
            continue;
        }
        const qsizetype end = std::find_if(text.begin() + at, text.end(), carriesByte) - text.begin();
        bytes += text.mid(at, end - at).toStdString();
        at = end;
    }
    return bytes;
}

bool isPlainText(std::string_view bytes) {
    return !std::ranges::any_of(textOfBytes(bytes), carriesByte);
}

} // namespace velmora
