// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <array>

class QLabel;

namespace velmora {

class CommandBank;
struct Appearance;

/// The line at the foot: the tool text at the left, and at the right what the right mouse button does,
/// `Lb1`(13 to 15) and (31).
class TextLine : public QWidget {
public:
    TextLine(const Appearance& look, const CommandBank& Lb1, QWidget* parent);

    /// @p caption says what the text tells; nothing is shown for a blank text.
    void setText(const QString& caption, const QString& text);
    void layOut();
    /// From left to right.
    [[nodiscard]] const std::array<QWidget*, 4>& parts() const { return parts_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
    QLabel* text_;
    QLabel* caption_;
    std::array<QWidget*, 4> parts_{};
};

} // namespace velmora
