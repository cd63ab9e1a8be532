// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ButtonBar.h"

#include "base/QtText.h"
#include "parts/CommandBank.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "tableau/Commands.h"

#include <QMenu>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kTop = 4;
constexpr int kButton = 28;
constexpr int kRoomy = 1024; ///< where the bar is narrower, its buttons stand closer to have room
constexpr int kFirstStyle = lb1("percussion");
constexpr int kLastStyle = lb1("accidentals");

std::vector<CommandButton*> buttonsOf(const CommandBank& bank, int first, int last) {
    std::vector<CommandButton*> buttons;
    for (int index = first; index <= last; ++index)
        buttons.push_back(&bank[index]);
    return buttons;
}
} // namespace

ButtonBar::ButtonBar(const Appearance& look, const CommandBank& Cmd2, const CommandBank& Lb1, ExToolTip& tips,
                     QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , Lb1_(Lb1)
    , groups_{buttonsOf(Cmd2, cmd2("clear"), cmd2("save")),
              buttonsOf(Cmd2, cmd2("play"), cmd2("loop")),
              {&Cmd2[cmd2("mode")], &Lb1[lb1("undo")], &Lb1[lb1("redo")]},
              buttonsOf(Cmd2, cmd2("copy"), cmd2("duplicate")),
              buttonsOf(Lb1, kFirstStyle, kLastStyle)}
    , windows_{&Lb1[lb1("songwriter")], &Lb1[lb1("studio")], &Lb1[lb1("keyboard")], &Lb1[lb1("setup")]}
    , help_{&Lb1[lb1("help")], &Lb1[lb1("tutorial")]}
    , more_(new CommandButton(look, ButtonForm::Icon, this))
    , moreMenu_(new QMenu(this)) {
    groups_[1].push_back(&Lb1[lb1("silence")]);
    setObjectName("buttonBar");
    more_->setObjectName("more");
    more_->setFace("more");
    tips.SetToolTip(*more_, {"More", "Percussion and note styles", "more"});
    connect(more_, &QAbstractButton::clicked, this, [this] { showMore(); });
    for (CommandButton* button : fromLeftToRight())
        if (button != more_)
            button->setParent(this);
    setOrder();
}

std::vector<CommandButton*> ButtonBar::fromLeftToRight() const {
    std::vector<CommandButton*> buttons;
    for (const auto& group : groups_)
        buttons.insert(buttons.end(), group.begin(), group.end());
    buttons.push_back(more_);
    buttons.insert(buttons.end(), windows_.rbegin(), windows_.rend());
    buttons.insert(buttons.end(), help_.rbegin(), help_.rend());
    return buttons;
}

/// Tab goes along the bar, although some indices stand behind later ones.
void ButtonBar::setOrder() {
    const std::vector<CommandButton*> buttons = fromLeftToRight();
    for (std::size_t i = 1; i < buttons.size(); ++i)
        setTabOrder(buttons[i - 1], buttons[i]);
}

void ButtonBar::layOut(FormWidth width) {
    const bool small = width == FormWidth::Small;
    const bool tight = small || this->width() < kRoomy;
    const int pitch = tight ? 30 : 32;
    const int gap = tight ? 8 : 12;
    separators_.clear();
    int x = 0;
    for (const auto& group : groups_) {
        const bool folds = small && &group == &groups_.back();
        if (x > 0) {
            separators_.push_back(x + (gap - 6) / 2);
            x += gap;
        }
        for (CommandButton* button : group) {
            button->setVisible(!folds);
            button->setGeometry(x, kTop, kButton, kButton);
            x += folds ? 0 : pitch;
        }
    }
    more_->setVisible(small);
    more_->setGeometry(x, kTop, kButton, kButton);

    x = this->width();
    const auto place = [&](CommandButton* button) {
        const bool words = width == FormWidth::Full && !button->text().isEmpty();
        button->setForm(words ? ButtonForm::IconAndText : ButtonForm::Icon);
        const int wide = button->sizeHint().width();
        x -= wide;
        button->setGeometry(x, kTop, wide, kButton);
        x -= pitch - kButton;
    };
    for (CommandButton* button : help_)
        place(button);
    separators_.push_back(x - (gap - 2) / 2);
    x -= gap;
    for (CommandButton* button : windows_)
        place(button);
    update();
}

void ButtonBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    for (const int x : separators_)
        paintSeparator(painter, look_.skin(), x, kTop + 2, 24);
}

void ButtonBar::showMore() {
    moreMenu_->clear();
    for (int index = kFirstStyle; index <= kLastStyle; ++index) {
        const CommandRow& row = Lb1_.row(index);
        QAction* action = moreMenu_->addAction(toQString(row.title));
        action->setCheckable(true);
        action->setChecked(Lb1_[index].isChecked());
        action->setEnabled(Lb1_[index].isEnabled());
        connect(action, &QAction::triggered, this, [this, index] { Lb1_.press(index); });
    }
    moreMenu_->popup(more_->mapToGlobal(QPoint(0, more_->height() + 2)));
}

} // namespace velmora
