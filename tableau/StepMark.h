// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <functional>

namespace velmora {

/// "[-<<|>>+]": a click in the left half lowers a value, one in the right half raises it.
class StepMark : public QWidget {
public:
    StepMark(const QString& name, QWidget* parent);

    std::function<void(int direction)> onHalf; ///< -1 or 1

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace velmora
