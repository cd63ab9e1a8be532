// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ToolPanel.h"

#include "composition/Workspace.h"
#include "parts/CommandBank.h"
#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"
#include "tableau/Commands.h"
#include "tableau/EditorPage.h"
#include "tableau/EffectsPage.h"
#include "tableau/MakerPage.h"

#include <QPainter>

namespace velmora {

namespace {
/// In the order of the pages.
constexpr std::array kTabs{lb1("maker"), lb1("effects"), lb1("editor")};
constexpr int kHidePanel = lb1("hide");
constexpr int kTabHeight = 20;
constexpr int kPadding = 8;
} // namespace

ToolPanel::ToolPanel(const Appearance& look, const CommandBank& Lb1, ExToolTip& tips, Workspace& workspace,
                     QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , Lb1_(Lb1)
    , maker_(new MakerPage({look, Lb1, tips}, workspace, this))
    , effects_(new EffectsPage({look, Lb1, tips}, workspace, this))
    , editor_(new EditorPage({look, Lb1, tips}, workspace, this))
    , pages_{maker_, effects_, editor_} {
    setObjectName("toolPanel");
    for (const int tab : kTabs)
        Lb1[tab].setParent(this);
    Lb1[kHidePanel].setParent(this);
    // What both pages show follows the one that was changed last.
    maker_->onCycle = [this] { editor_->refresh(); };
    editor_->onCycle = [this] { maker_->refresh(); };
    setOrder();
    showPage(Editor);
}

/// Tab goes from the tabs through the page, from left to right.
void ToolPanel::setOrder() {
    std::vector<QWidget*> order;
    order.reserve(kTabs.size());
    for (const int tab : kTabs)
        order.push_back(&Lb1_[tab]);
    for (const ToolPage* page : pages_)
        order.insert(order.end(), page->order().begin(), page->order().end());
    order.push_back(&Lb1_[kHidePanel]);
    for (std::size_t i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void ToolPanel::showPage(Page page) {
    page_ = page;
    pages_[page]->refresh();
    pages_[page]->layOut(width_);
    effects_->showOn(page == Effects); // its tab switches them on, the others off
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        pages_[i]->setVisible(static_cast<Page>(i) == page);
        Lb1_.setOn(kTabs[i], static_cast<Page>(i) == page);
    }
    update();
}

void ToolPanel::layOut(FormWidth width) {
    const bool narrow = width != FormWidth::Full;
    tabWidth_ = narrow ? 32 : 144;
    int y = 0;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        CommandButton& tab = Lb1_[kTabs[i]];
        tab.setIconOnly(narrow);
        tab.setGeometry(0, y, tabWidth_ + 1, kTabHeight);
        y += kTabHeight;
        tab.raise();
        ToolPage& page = *pages_[i];
        page.setGeometry(tabWidth_ + kPadding, 4, this->width() - tabWidth_ - kPadding - 32,
                         ToolPage::kHeight);
    }
    width_ = width;
    pages_[page_]->layOut(width); // the others when they are shown
    Lb1_[kHidePanel].setGeometry(this->width() - 28, 20, 20, 20);
    update();
}

void ToolPanel::refresh() {
    for (ToolPage* page : pages_)
        page->refresh();
}

void ToolPanel::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    const QRectF page(tabWidth_, 0, width() - tabWidth_, height());
    QPainter painter(this);
    // The active tab and the page are one surface: the page's left line is open beside it.
    painter.setClipRegion(QRegion(rect()) - QRect(tabWidth_, page_ * kTabHeight + 1, 1, kTabHeight - 2));
    paintGroup(painter, skin, page);
}

} // namespace velmora
