// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Files.h"

#include <QFile>
#include <QSaveFile>

namespace velmora {

namespace {
QString qtPath(const std::filesystem::path& path) {
    return QFile::decodeName(path.c_str());
}
} // namespace

std::optional<std::string> readWholeFile(const std::filesystem::path& path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return std::nullopt; // a directory, a pipe or a device could block or never end
    QFile file(qtPath(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    const qint64 got = file.read(bytes.data(), static_cast<qint64>(bytes.size()));
    if (got < 0)
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

std::string replaceFile(const std::filesystem::path& path, std::string_view bytes) {
    QSaveFile file(qtPath(path));
    // commit() flushes too, but takes a failure of that for success.
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(bytes.data(), static_cast<qint64>(bytes.size())) != static_cast<qint64>(bytes.size()) ||
        !file.flush() || !file.commit())
        return file.errorString().toStdString();
    return {};
}

} // namespace velmora
