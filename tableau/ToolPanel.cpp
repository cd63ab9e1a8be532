// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ToolPanel.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"
#include "tableau/CommandBank.h"

#include <QPainter>

namespace velmora {

namespace {
constexpr int kFirstTab = 17;
constexpr int kHidePanel = 16;
constexpr int kTabHeight = 20;
constexpr int kPadding = 8;

struct PageRow {
    const char* name;
    std::vector<std::vector<int>> groups; ///< of indices into `Lb1`
};

const std::array<PageRow, 3>& pageRows() {
    static const std::array<PageRow, 3> rows{{
        {"TB1", {{22, 23}}},
        {"TB2", {{20, 21}}},
        {"TB4", {{0, 24}, {25, 26, 27, 28}, {29}, {30}}},
    }};
    return rows;
}
} // namespace

class ToolPanel::ToolPage : public QWidget {
public:
    ToolPage(const Appearance& look, const CommandBank& Lb1, const PageRow& row, QWidget* parent)
        : QWidget(parent)
        , look_(look)
        , Lb1_(Lb1)
        , row_(row) {
        setObjectName(row.name);
        for (const auto& group : row.groups)
            for (const int index : group)
                Lb1[index].setParent(this);
    }

    void layOut(FormWidth width) {
        const bool small = width == FormWidth::Small;
        separators_.clear();
        int x = 0;
        for (const auto& group : row_.groups) {
            if (x > 0) {
                separators_.push_back(x + 4);
                x += 14;
            }
            for (const int index : group) {
                CommandButton& button = Lb1_[index];
                button.setForm(small ? ButtonForm::Icon : ButtonForm::IconOverText);
                const QSize size = button.sizeHint();
                button.setGeometry(x, (52 - size.height()) / 2, size.width(), size.height());
                x += size.width() + 4;
            }
        }
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        for (const int x : separators_)
            paintSeparator(painter, look_.skin(), x, 4, 44);
    }

private:
    const Appearance& look_;
    const CommandBank& Lb1_;
    const PageRow& row_;
    std::vector<int> separators_;
};

ToolPanel::ToolPanel(const Appearance& look, const CommandBank& Lb1, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , Lb1_(Lb1) {
    setObjectName("toolPanel");
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        Lb1[kFirstTab + static_cast<int>(i)].setParent(this);
        pages_[i] = new ToolPage(look, Lb1, pageRows()[i], this);
    }
    Lb1[kHidePanel].setParent(this);
    showPage(Editor);
}

void ToolPanel::showPage(Page page) {
    page_ = page;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        pages_[i]->setVisible(static_cast<Page>(i) == page);
        Lb1_.setOn(kFirstTab + static_cast<int>(i), static_cast<Page>(i) == page);
    }
    update();
}

void ToolPanel::layOut(FormWidth width) {
    const bool narrow = width != FormWidth::Full;
    tabWidth_ = narrow ? 32 : 144;
    for (int i = 0; i < static_cast<int>(pages_.size()); ++i) {
        CommandButton& tab = Lb1_[kFirstTab + i];
        tab.setIconOnly(narrow);
        tab.setGeometry(0, i * kTabHeight, tabWidth_ + 1, kTabHeight);
        tab.raise();
        ToolPage& page = *pages_[static_cast<std::size_t>(i)];
        page.setGeometry(tabWidth_ + kPadding, 4, this->width() - tabWidth_ - kPadding - 32, 52);
        page.layOut(width);
    }
    Lb1_[kHidePanel].setGeometry(this->width() - 28, 20, 20, 20);
    update();
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
