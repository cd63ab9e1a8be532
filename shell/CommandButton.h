// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractButton>

#include <cstdint>
#include <string>
#include <string_view>

class QPainter;

namespace velmora {

struct Appearance;

/// How a command's face is built up.
enum class ButtonForm : std::uint8_t {
    Icon,         ///< 28 by 28
    IconAndText,  ///< 28 high, the words beside the icon
    IconOverText, ///< 52 high, small words under the icon
    Text,         ///< 24 high, in a panel; an icon where there are no words
    Tab           ///< 20 high, at the left of a page that the active one runs into
};

/// A button of the command bars: an icon of the set, words, or both, on a face of the chosen style.
class CommandButton : public QAbstractButton {
public:
    /// @param look is read at each painting and must outlive the button
    CommandButton(const Appearance& look, ButtonForm form, QWidget* parent);

    /// The words are the button's accessible name, too, unless it has one.
    void setFace(std::string_view icon, const QString& words = {});
    void setForm(ButtonForm form);
    /// A tab that shows its icon alone.
    void setIconOnly(bool iconOnly);
    [[nodiscard]] ButtonForm form() const { return form_; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void paintTab(QPainter& painter) const;
    void paintWords(QPainter& painter, const QRectF& all) const;

    const Appearance& look_;
    ButtonForm form_;
    std::string icon_;
    bool iconOnly_ = false;
};

} // namespace velmora
