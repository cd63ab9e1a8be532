// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <functional>

namespace velmora {

struct Appearance;

/// `Label4`: the mouse over it stops all sound.
class PanicBar : public QWidget {
public:
    PanicBar(const Appearance& look, QWidget* parent);

    std::function<void()> onMove;
    /// In its signal colour, or in that of the skin.
    void setLit(bool lit);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    const Appearance& look_;
    bool lit_ = false;
};

} // namespace velmora
