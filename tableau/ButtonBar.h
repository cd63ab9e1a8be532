// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <vector>

class QMenu;

namespace velmora {

class CommandBank;
class CommandButton;
class ExToolTip;
struct Appearance;

/// The bar under the menus: `Cmd2` and part of `Lb1` at the left, the buttons of other windows at the right.
/// Where it is too narrow, the note styles fold behind a button "more".
class ButtonBar : public QWidget {
public:
    ButtonBar(const Appearance& look, const CommandBank& Cmd2, const CommandBank& Lb1, ExToolTip& tips,
              QWidget* parent);

    void layOut(FormWidth width);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showMore();
    [[nodiscard]] std::vector<CommandButton*> fromLeftToRight() const;
    void setOrder();

    const Appearance& look_;
    const CommandBank& Lb1_;
    std::vector<std::vector<CommandButton*>> groups_; ///< from the left
    std::vector<CommandButton*> windows_;             ///< from the right
    std::vector<CommandButton*> help_;                ///< the same, right of them
    CommandButton* more_;
    QMenu* moreMenu_;
    std::vector<int> separators_; ///< where they stand across
};

} // namespace velmora
