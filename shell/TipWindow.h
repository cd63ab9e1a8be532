// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/TipPainter.h"

#include <QWidget>

namespace velmora {

/// The small window of a tip: on top of all others, never active, and the mouse passes through it.
class TipWindow : public QWidget {
public:
    TipWindow();

    /// Shows it by the mouse for @p owner, on the screen where the mouse is.
    void showAt(QPoint mouse, const TipContent& content, const TipColours& colours, const QWidget& owner);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TipContent content_;
    TipColours colours_;
    TipLayout layout_;
    bool shinesThrough_ = true;
};

} // namespace velmora
