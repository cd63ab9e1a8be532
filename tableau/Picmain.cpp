// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Picmain.h"

#include "score/Score.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace velmora {

namespace {
constexpr int kColumn = 12;
constexpr Rgb kCellLine{237, 237, 237};
constexpr Rgb kMeasureLine{68, 204, 255};
constexpr Rgb kSideBar{131, 186, 182};
constexpr Rgb kGuide{102, 122, 121}; ///< the one lightness on which white and black names both read
constexpr int kSideBarShown = 6;

constexpr const char* kBarTip = "Click to scroll";
} // namespace

/// A surface of white paper with a thin edge outside of it.
class Picmain::Paper : public QWidget {
public:
    Paper(const char* name, const char* said, bool ruled, QWidget* parent) : QWidget(parent), ruled_(ruled) {
        setObjectName(name);
        setAccessibleName(said);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    void setMeasure(int notesPerMeasure) {
        notesPerMeasure_ = notesPerMeasure;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        for (int column = 0; ruled_ && column * kColumn < width(); ++column) {
            const bool measure = column > 0 && notesPerMeasure_ > 0 && column % notesPerMeasure_ == 0;
            verticalLine(painter, column * kColumn, 0, height(),
                         toQColor(measure ? kMeasureLine : kCellLine));
        }
    }

private:
    bool ruled_;
    int notesPerMeasure_ = 16;
};

/// `PicX` over `SideBar`, of which a strip shows at the left.
class Picmain::Guide : public QWidget {
public:
    explicit Guide(QWidget* parent) : QWidget(parent) {
        setObjectName("PicX");
        setAccessibleName("Note guide");
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), toQColor(kSideBar));
        painter.fillRect(rect().adjusted(kFrame + kSideBarShown, 0, 0, 0), toQColor(kGuide));
    }

private:
    static constexpr int kFrame = 4; ///< under the window's edge
};

Picmain::Picmain(const Appearance& look, ExToolTip& tips, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , Pic3_(new Paper("Pic3", "Polynote Selector", true, this))
    , Pic2a_(new Paper("Pic2a", "Note Indicator and Identifier", true, this))
    , Beatbox_(new Paper("Beatbox", "Percussion Tableau", false, this))
    , MusicBox_(new Paper("MusicBox", "Melody Tableau", false, this))
    , PicX_(new Guide(this))
    , HScroll1_(new QScrollBar(Qt::Horizontal, this))
    , VScroll1_(new QScrollBar(Qt::Vertical, this)) {
    setObjectName("Picmain");
    setAccessibleName("Tableau");
    setFocusPolicy(Qt::StrongFocus);
    HScroll1_->setObjectName("HScroll1");
    VScroll1_->setObjectName("VScroll1");
    tips.SetToolTip(*HScroll1_, {"Score position", kBarTip, ""});
    tips.SetToolTip(*VScroll1_, {"Pitch", kBarTip, ""});
    // There is nothing to scroll before the Tableau is drawn.
    HScroll1_->setEnabled(false);
    VScroll1_->setEnabled(false);
}

void Picmain::layOut(const FormLayout& layout, QPoint origin) {
    const auto here = [origin](const QRect& rect) { return rect.translated(-origin); };
    Pic3_->setGeometry(here(layout.pic3));
    Pic2a_->setGeometry(here(layout.pic2a));
    Beatbox_->setGeometry(here(layout.beatbox));
    Beatbox_->setVisible(!layout.beatbox.isEmpty());
    MusicBox_->setGeometry(here(layout.musicBox));
    PicX_->setGeometry(here(layout.guide));
    HScroll1_->setGeometry(here(layout.horizontalBar));
    VScroll1_->setGeometry(here(layout.verticalBar));
    splitter_ = layout.splitter.isEmpty() ? QRect() : here(layout.splitter);
    musicBoxTop_ = layout.musicBox.top();
    update();
}

QWidget* Picmain::surface(Surface which) const {
    switch (which) {
    case Surface::MusicBox:
        return MusicBox_;
    case Surface::Beatbox:
        return Beatbox_;
    case Surface::Guide:
        return PicX_;
    case Surface::Pic2a:
        return Pic2a_;
    case Surface::Pic3:
        return Pic3_;
    case Surface::None:
        break;
    }
    return nullptr;
}

Picmain::Surface Picmain::surfaceAt(QPoint at) const {
    for (const auto which :
         {Surface::MusicBox, Surface::Beatbox, Surface::Guide, Surface::Pic2a, Surface::Pic3})
        if (surface(which)->isVisible() && surface(which)->geometry().contains(at))
            return which;
    return Surface::None;
}

void Picmain::show(const Score& score) {
    Pic3_->setMeasure(score.NotesPerMeasure);
    Pic2a_->setMeasure(score.NotesPerMeasure);
    HScroll1_->setMaximum(std::max(0, score.NumNotes - 10));
}

void Picmain::setEditable(bool editable) {
    MusicBox_->setEnabled(editable);
    Beatbox_->setEnabled(editable);
}

void Picmain::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && onRightPress) {
        onRightPress(surfaceAt(event->position().toPoint()), event->globalPosition().toPoint());
        return;
    }
    QWidget::mousePressEvent(event);
}

void Picmain::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    QPainter painter(this);
    for (const QWidget* paper : {static_cast<QWidget*>(Pic3_), static_cast<QWidget*>(Pic2a_),
                                 static_cast<QWidget*>(Beatbox_), static_cast<QWidget*>(MusicBox_)})
        if (paper->isVisible())
            strokeRounded(painter, QRectF(paper->geometry()).adjusted(-1, -1, 1, 1), 0, toQColor(skin.line));
    if (!splitter_.isEmpty()) // its grip
        fillRounded(painter, QRectF(splitter_.center().x() - 15, splitter_.top() + 1, 32, 2), 1,
                    toQColor(skin.dim));
    painter.setFont(textFont(10));
    painter.setPen(toQColor(skin.dim));
    const auto caption = [&](const QWidget* paper, const char* text) {
        const QRect at(0, paper->y(), paper->x() - 8, paper->height());
        if (paper->isVisible())
            painter.drawText(at, Qt::AlignRight | Qt::AlignVCenter, QString::fromLatin1(text));
    };
    caption(Pic3_, "Chord");
    caption(Pic2a_, "Note");
    caption(Beatbox_, "Beat");
}

} // namespace velmora
