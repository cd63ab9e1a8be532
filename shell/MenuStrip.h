// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMenuBar>
#include <QPointer>

#include <memory>
#include <span>
#include <string_view>

namespace velmora {

class Frmmenu;

/// The row of labels `Lmnu` over the faces `mnuBtn`, from which a window's popups hang: hover raises a face,
/// a press sinks it, F10 or Alt opens the first, Alt with a label's first letter that one, the arrows walk,
/// Esc closes. Then the focus is where it was before. While Alt is held the letters are underlined.
class MenuStrip : public QMenuBar {
public:
    struct Label {
        int index; ///< of `Lmnu`
        std::string_view caption;
        std::string_view popup;
    };

    /// @p labels from left to right. The popups belong to @p menus and are brought up as its window's.
    MenuStrip(const Frmmenu& menus, std::span<const Label> labels, QWidget* parent);
    ~MenuStrip() override;

    /// Opens the popup of `Lmnu`(index) under its label, with its first item reached.
    void Lmnu_Click(int index);

    /// Whether the letters that open a menu with Alt are underlined.
    [[nodiscard]] bool showsLetters() const { return letters_ != nullptr; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class AltHeld;

    [[nodiscard]] QAction* label(int index) const;
    void openReached();
    void followPopup(const QMenu& popup);
    void leaveUnlessOpen();
    void showLetters(bool shown);

    QPointer<QWidget> before_; ///< what had the focus
    std::unique_ptr<AltHeld> letters_;
};

} // namespace velmora
