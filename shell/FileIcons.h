// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractFileIconProvider>

namespace velmora {

struct Appearance;

/// Our icons for folders and files, by the end of the name: nothing is opened to be looked into.
/// Thread-safe: yes; Qt asks from the thread that reads the folders.
class FileIcons : public QAbstractFileIconProvider {
public:
    /// @param look must outlive every view of the icons
    explicit FileIcons(const Appearance& look) : look_(look) {}

    [[nodiscard]] QIcon icon(IconType type) const override;
    [[nodiscard]] QIcon icon(const QFileInfo& file) const override;
    [[nodiscard]] QString type(const QFileInfo& file) const override;

private:
    const Appearance& look_;
};

} // namespace velmora
