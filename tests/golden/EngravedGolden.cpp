// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/EngravedGolden.h"

#include "golden/GoldenPicture.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace velmora {

namespace {
QByteArray viewOf(std::string_view bytes) {
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString storeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    const bool stored = QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
                        file.write(bytes) == bytes.size();
    return stored ? QString() : QStringLiteral("cannot write %1").arg(path);
}

QString firstDifference(const QString& path, const QByteArray& kept, const QByteArray& now) {
    const auto old = kept.split('\n');
    const auto fresh = now.split('\n');
    const auto count = std::min(old.size(), fresh.size());
    qsizetype i = 0;
    while (i < count && old[i] == fresh[i])
        ++i;
    const auto lineOf = [i](const QList<QByteArray>& lines) {
        return i < lines.size() ? QString::fromUtf8(lines[i]) : QStringLiteral("(the end)");
    };
    return QStringLiteral("%1, line %2: \"%3\" is kept, \"%4\" is now")
        .arg(path)
        .arg(i + 1)
        .arg(lineOf(old), lineOf(fresh));
}

/// An empty string if @p bytes are what is kept, or are kept from now on.
QString remake(const QString& name, const QString& path, const QByteArray& bytes) {
    const QByteArray kept = readFile(path);
    if (kept == bytes)
        return {};
    const QString seen = QStringLiteral(VELMORA_GOLDEN_OUTPUT "/%1.change.png").arg(name);
    const QImage old = QImage::fromData(kept), now = QImage::fromData(bytes);
    const bool isPicture = !old.isNull() && !now.isNull();
    if (isPicture && !(QDir().mkpath(QFileInfo(seen).path()) && sideBySide(old, now).save(seen)))
        return QStringLiteral("cannot write %1").arg(seen);
    std::printf("%s: %s\n", qPrintable(QFileInfo(path).fileName()),
                kept.isEmpty() ? "new"
                : isPicture    ? qPrintable(seen)
                               : "changed");
    return storeFile(path, bytes);
}

QString checkPicture(const QString& name, const QString& path, const QByteArray& png, int scale) {
    const QByteArray kept = readFile(path);
    if (kept == png)
        return {};
    const QImage golden = QImage::fromData(kept).convertToFormat(QImage::Format_RGB888);
    const QImage now = QImage::fromData(png).convertToFormat(QImage::Format_RGB888);
    if (golden.isNull() || now.isNull())
        return QStringLiteral("there is no picture %1, or nothing was painted").arg(path);
    const Difference difference = compare(golden, now, scale);
    if (difference.isTolerable())
        return {};
    const QString seen = QStringLiteral(VELMORA_GOLDEN_OUTPUT "/%1").arg(name);
    const bool stored = storeFile(seen + ".png", png).isEmpty() &&
                        differencePicture(golden, now).save(seen + ".difference.png");
    return QStringLiteral("%1: %2 pixels differ; see %3.difference.png%4")
        .arg(name)
        .arg(difference.pixels)
        .arg(seen, stored ? QString() : QStringLiteral(" (which cannot be written)"));
}
} // namespace

QString checkEngraved(const QString& name, std::string_view list, std::string_view png, int scale) {
    const QString wrong = checkKeptText(QStringLiteral("tests/golden/%1.txt").arg(name), list);
    if (!wrong.isEmpty())
        return wrong;
    const QString path = QStringLiteral(VELMORA_GOLDEN_DIR "/%1.png").arg(name);
    return isRemakingGolden() ? remake(name, path, viewOf(png))
                              : checkPicture(name, path, viewOf(png), scale);
}

QString checkNotKept(const QString& name) {
    for (const char* const extension : {"txt", "png"}) {
        const QString path = QStringLiteral(VELMORA_GOLDEN_DIR "/%1.%2").arg(name, extension);
        if (QFileInfo::exists(path) && !(isRemakingGolden() && QFile::remove(path)))
            return QStringLiteral("%1 is kept, but not made").arg(path);
    }
    return {};
}

QString checkKeptText(const QString& path, std::string_view text) {
    const QString whole = QStringLiteral(VELMORA_GOLDEN_DIR "/../../%1").arg(path);
    if (isRemakingGolden())
        return remake(path, whole, viewOf(text));
    const QByteArray kept = readFile(whole);
    return kept == viewOf(text) ? QString() : firstDifference(path, kept, viewOf(text));
}

} // namespace velmora
