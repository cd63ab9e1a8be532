// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/BringUp.h"

#include <QWidget>

namespace velmora {

void bringUp(QWidget& window, Windows::Focus focus) {
    window.setAttribute(Qt::WA_ShowWithoutActivating, focus == Windows::Focus::Leave);
    if (window.isMinimized())
        window.showNormal();
    else
        window.show();
    window.raise();
    if (focus == Windows::Focus::Take)
        window.activateWindow();
}

} // namespace velmora
