// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Appearance.h"

#include <QWidget>

#include <array>

class QMenu;

namespace velmora {

class Frmmenu;

/// One sheet with every control of the program in every state: what painters and style make of a skin.
class PartsSheet : public QWidget {
public:
    explicit PartsSheet(const Appearance& look);

    static constexpr QSize kSize{1108, 800};

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addButtons();
    void addFields();
    void addChoices();
    void addSliders();
    void addTabs();

    std::array<Appearance, kButtonStyles.size()> looks_;
};

/// The sheet with the popup menus on it, which are windows of their own.
[[nodiscard]] QImage pictureOfParts(const Appearance& look, Frmmenu& menu, qreal scale);

} // namespace velmora
