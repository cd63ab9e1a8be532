// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMenuBar>

#include <span>
#include <string_view>

namespace velmora {

class Frmmenu;

/// The row of labels `Lmnu` over the faces `mnuBtn`, from which a window's popups hang: hover raises a face,
/// a press sinks it, F10 or Alt opens the first, the arrows walk, Esc closes.
class MenuStrip : public QMenuBar {
public:
    struct Label {
        int index; ///< of `Lmnu`
        std::string_view caption;
        std::string_view popup;
    };

    /// @p labels from left to right. The popups belong to @p menus and are brought up as its window's.
    MenuStrip(const Frmmenu& menus, std::span<const Label> labels, QWidget* parent);

    /// Opens the popup of `Lmnu`(index) under its label, with its first item reached.
    void Lmnu_Click(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QAction* label(int index) const;
    void openReached();
};

} // namespace velmora
