// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Picmain.h"

#include "composition/Workspace.h"
#include "score/Score.h"
#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "tableau/BarPainter.h"
#include "tableau/GuidePainter.h"
#include "tableau/Splitter.h"
#include "tableau/StrokePainter.h"
#include "tableau/ViewGeometry.h"
#include "tableau/ViewScroll.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace velmora {

namespace {
constexpr Rgb kSideBar{131, 186, 182};
constexpr int kSideBarShown = 6;
constexpr int kWheelStep = 120;  ///< eighths of a degree in a notch
constexpr int kAngleOfPixel = 3; ///< of a touchpad that tells pixels alone: 40 of them are a notch
constexpr int kRowsOfNotch = 3;
constexpr int kColumnsOfNotch = 4;

constexpr int kHintLeft = 6 * kColumnWidth;

constexpr const char* kBarTip = "Click to scroll";
constexpr const char* kHint = "Draw here: press the mouse, drag to the right, and let go.\n"
                              "Up is higher, and longer lines are longer notes. Space plays what you drew.";
} // namespace

/// `PicX` over `SideBar`, of which a strip shows at the left.
class Picmain::Guide : public QWidget {
public:
    Guide(const Workspace& workspace, QWidget* parent) : QWidget(parent), workspace_(workspace) {
        setObjectName("PicX");
        setAccessibleName("Note guide");
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), toQColor(kSideBar));
        const RowNames names = workspace_.manners.growsRowNames ? RowNames::Growing : RowNames::OfTwoSizes;
        paintGuide(painter, rect().adjusted(kFrame + kSideBarShown, 0, 0, 0), workspace_.view, names);
    }

private:
    static constexpr int kFrame = 4; ///< under the window's edge
    const Workspace& workspace_;
};

Picmain::Picmain(const Appearance& look, ExToolTip& tips, Workspace& workspace, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , workspace_(workspace)
    , scene_{workspace.score, workspace.view, workspace.setup, workspace.manners}
    , Pic3_(new TableauBox("Pic3", "Polynote Selector", this))
    , Pic2a_(new TableauBox("Pic2a", "Note Indicator and Identifier", this))
    , Beatbox_(new TableauBox("Beatbox", "Percussion Tableau", this))
    , MusicBox_(new TableauBox("MusicBox", "Melody Tableau", this))
    , PicX_(new Guide(workspace, this))
    , hint_(new QLabel(QLatin1String(kHint), MusicBox_))
    , HScroll1_(new ViewScroll(Qt::Horizontal, "HScroll1", this))
    , VScroll1_(new ViewScroll(Qt::Vertical, "VScroll1", this))
    , Label9_(new Splitter(look, this)) {
    setObjectName("Picmain");
    setAccessibleName("Tableau");
    setAccessibleDescription("The notes of the score. Arrows and Page keys scroll; the mouse draws");
    setFocusPolicy(Qt::StrongFocus);
    tips.SetToolTip(*HScroll1_, {"Score position", kBarTip, ""});
    tips.SetToolTip(*VScroll1_, {"Pitch", kBarTip, ""});
    tips.SetToolTip(
        *Label9_, {"Percussion Tableau",
                   "If you need to enlarge the tableau height, place your cursor on it, hold down the right "
                   "mousebutton and slide it downwards to expose as much space as you need.",
                   ""});
    hint_->setObjectName("hint");
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    hint_->setContentsMargins(12, 8, 12, 8);
    hint_->setAutoFillBackground(true);
    QPalette quiet = hint_->palette(); // on the white paper, whatever the skin
    quiet.setColor(QPalette::Window, Qt::white);
    quiet.setColor(QPalette::WindowText, QColor(88, 96, 108));
    hint_->setPalette(quiet);
    hint_->hide();

    HScroll1_->valueAt = [this](int place, int length) {
        return railValue(workspace_.view, workspace_.score.SongEnd, place, length);
    };
    HScroll1_->onScroll = [this](int value) { scrolledColumns(value); };
    VScroll1_->onScroll = [this](int value) { scrolledRows(value); };
    Label9_->onRelease = [this](int top) {
        if (onSplit)
            onSplit(top - Beatbox_->y());
    };
    MusicBox_->onStale = [this] { DrawNoteArray(); };
    Beatbox_->onStale = [this] { DrawBeatArray(); };
    Pic3_->onStale = [this] { drawPolynoteBar(); };
    Pic2a_->onStale = [this] { drawIndicatorBar(clicked_); };
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
    Label9_->layOut(layout.splitter.isEmpty() ? QRect() : here(layout.splitter));
    placeHint();
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

TableauBox::Mouse& Picmain::mouseOn(Surface which) {
    return static_cast<TableauBox*>(surface(which))->mouse;
}

TableauBox& Picmain::box(Box which) const {
    return which == Box::MusicBox ? *MusicBox_ : *Beatbox_;
}

int Picmain::rowHeight(Box which) const {
    return which == Box::MusicBox ? workspace_.view.Line_Height : kBeatRowHeight;
}

int Picmain::width(Box which) const {
    return box(which).QWidget::width();
}

void Picmain::setEditable(bool editable) {
    MusicBox_->setEnabled(editable);
    Beatbox_->setEnabled(editable);
    HScroll1_->setEnabled(editable);
    VScroll1_->setEnabled(editable);
}

void Picmain::showHint(bool shown) {
    hint_->setVisible(shown);
    placeHint();
}

void Picmain::placeHint() {
    hint_->adjustSize();
    // Behind the clefs, where a window that floats in the lower right covers nothing of it.
    const int left = std::min(kHintLeft, std::max(0, MusicBox_->width() - hint_->width()));
    hint_->move(left, (MusicBox_->height() * 3 / 4 - hint_->height()) / 2);
}

void Picmain::DrawNoteArray() {
    if (!isVisible())
        return;
    melody_.paint(MusicBox_->picture(), scene_);
    ++paintings_[static_cast<std::size_t>(Box::MusicBox)];
    row_.forget();
    line_.forget();
    MusicBox_->update();
}

void Picmain::DrawBeatArray() {
    if (!isVisible() || Beatbox_->isHidden())
        return;
    beat_.paint(Beatbox_->picture(), scene_);
    ++paintings_[static_cast<std::size_t>(Box::Beatbox)];
    row_.forget();
    beatLine_.forget();
    Beatbox_->update();
}

void Picmain::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    drawAll();
}

void Picmain::drawGuide() {
    PicX_->update();
}

void Picmain::drawPolynoteBar() {
    if (!isVisible())
        return;
    paintPolynoteBar(Pic3_->picture(), scene_);
    Pic3_->update();
}

void Picmain::markPolynote(int column) {
    markPolynoteColumn(Pic3_->picture(), scene_, column);
    Pic3_->update();
}

void Picmain::drawIndicatorBar(std::optional<int> clicked) {
    clicked_ = clicked;
    if (!isVisible())
        return;
    paintIndicatorBar(Pic2a_->picture(), scene_, clicked);
    Pic2a_->update();
}

void Picmain::drawAll() {
    drawGuide();
    drawIndicatorBar();
    drawPolynoteBar();
    DrawNoteArray();
    DrawBeatArray();
}

void Picmain::clearMusicBox() {
    if (!isVisible())
        return;
    MusicBox_->picture().fill(Qt::white);
    MusicBox_->update();
}

QRect Picmain::rowStrip(Box which, int row) const {
    // A ball is a little higher than a row.
    constexpr int kStrip = 15;
    return {0, row * rowHeight(which) - 2, width(which), kStrip};
}

QRect Picmain::columnStrip(Box which, int column) const {
    return {column * kColumnWidth - 1, 0, 3, box(which).height()};
}

/// A picture to draw over. It is another one where the window has come to stand on another screen.
QImage& Picmain::painted(Box which) {
    if (!box(which).isStale())
        return box(which).picture();
    if (which == Box::MusicBox)
        DrawNoteArray();
    else
        DrawBeatArray();
    return box(which).picture();
}

template<class Draw>
void Picmain::drawOver(Box which, const QRect& part, Draw draw) {
    QImage& picture = painted(which);
    const auto drawHere = [&] { draw(picture); };
    if (which == Box::MusicBox)
        melody_.drawOver(picture, part, drawHere);
    else
        drawHere();
    box(which).showPart(part);
}

void Picmain::GetRow(Box which, int row) {
    row_.save(painted(which), rowStrip(which, row));
}

void Picmain::PutRow(Box which, int row) {
    drawOver(which, rowStrip(which, row), [this](QImage& picture) { row_.restore(picture); });
}

void Picmain::GetBox() {
    whole_.save(painted(Box::MusicBox), MusicBox_->rect());
}

void Picmain::PutBox() {
    drawOver(Box::MusicBox, MusicBox_->rect(), [this](QImage& picture) { whole_.restore(picture); });
}

void Picmain::GetColumn(int column) {
    lineColumn_ = column;
    line_.save(painted(Box::MusicBox), columnStrip(Box::MusicBox, column));
    if (Beatbox_->isHidden())
        beatLine_.forget();
    else
        beatLine_.save(painted(Box::Beatbox), columnStrip(Box::Beatbox, column));
}

void Picmain::PutColumn() {
    drawOver(Box::MusicBox, columnStrip(Box::MusicBox, lineColumn_),
             [this](QImage& picture) { line_.restore(picture); });
    if (beatLine_.holds())
        drawOver(Box::Beatbox, columnStrip(Box::Beatbox, lineColumn_),
                 [this](QImage& picture) { beatLine_.restore(picture); });
}

void Picmain::drawPlayLine(int column) {
    const PlayLine how = workspace_.manners.showsPlayLineBoldly ? PlayLine::Bold : PlayLine::Pale;
    for (const Box which : {Box::MusicBox, Box::Beatbox})
        if (!box(which).isHidden())
            drawOver(which, columnStrip(which, column),
                     [&](QImage& picture) { paintPlayLine(picture, column, how); });
}

void Picmain::drawPressBall(int row, int column) {
    drawOver(Box::MusicBox, rowStrip(Box::MusicBox, row),
             [&](QImage& picture) { paintPressBall(picture, row, column, workspace_.view.Line_Height); });
}

void Picmain::drawBand(Box which, int row, int fromColumn, int toColumn) {
    drawOver(which, rowStrip(which, row), [&](QImage& picture) {
        paintBand(picture, scene_, which == Box::Beatbox, row, fromColumn, toColumn);
    });
}

void Picmain::drawSelectEdge(int column) {
    drawOver(Box::MusicBox, MusicBox_->rect(), [&](QImage& picture) { paintSelectEdge(picture, column); });
}

void Picmain::blendSelectStrip() {
    const ViewState& view = workspace_.view;
    const int left = std::max(0, (view.SelectStart - view.ViewFirstColumn) * kColumnWidth);
    const int right = view.SelectEnd > view.ViewLastColumn
                          ? MusicBox_->QWidget::width() - 1
                          : (view.SelectEnd - view.ViewFirstColumn) * kColumnWidth;
    if (view.SelectStart >= 0 && right > left)
        drawOver(Box::MusicBox, MusicBox_->rect(),
                 [&](QImage& picture) { blendStrip(picture, left, right - left, Qt::blue); });
}

void Picmain::drawSelectDrag(int fromColumn, int toColumn) {
    drawOver(Box::MusicBox, MusicBox_->rect(), [&](QImage& picture) {
        paintSelectDrag(picture, fromColumn, toColumn, palette().color(QPalette::Highlight));
    });
}

void Picmain::followView() {
    const ViewState& view = workspace_.view;
    HScroll1_->follow(columnRange(view, workspace_.score.SongEnd), columnValue(view));
    VScroll1_->follow(rowRange(view, MusicBox_->height()), rowValue(view));
}

void Picmain::setScrollMaximum(int maximum) {
    HScroll1_->follow({HScroll1_->minimum(), maximum, HScroll1_->pageStep()}, HScroll1_->value());
}

void Picmain::advanceScroll(int columns) {
    HScroll1_->setValue(HScroll1_->value() + columns);
}

void Picmain::advanceRows(int rows) {
    VScroll1_->setValue(VScroll1_->value() + rows);
}

void Picmain::advancePage(int pages) {
    advanceScroll(pages * (workspace_.view.ViewColumns + 1));
}

void Picmain::scrolledColumns(int value) {
    scrollToColumn(workspace_.view, value, workspace_.score.NumNotes);
    if (onScrolled)
        onScrolled();
    DrawNoteArray();
    DrawBeatArray();
    drawIndicatorBar();
    drawPolynoteBar();
}

void Picmain::scrolledRows(int value) {
    scrollToRow(workspace_.view, value);
    drawGuide();
    DrawNoteArray();
    DrawBeatArray(); // its rows count from the view's top, too
}

/// Fine wheels and touchpads turn by parts of a notch. Who turns back begins anew, and what a touchpad still
/// rolls on after the fingers have gone was meant for scrolling.
void Picmain::zoomBy(const QWheelEvent& event) {
    if (event.phase() == Qt::ScrollMomentum)
        return;
    const int turned =
        event.angleDelta().isNull() ? event.pixelDelta().y() * kAngleOfPixel : event.angleDelta().y();
    if (turned * zoomWheel_ < 0)
        zoomWheel_ = 0;
    zoomWheel_ += turned;
    const int notches = zoomWheel_ / kWheelStep;
    zoomWheel_ -= notches * kWheelStep;
    const int y = MusicBox_->mapFrom(this, event.position().toPoint()).y();
    if (notches != 0 && onZoom)
        onZoom(notches, std::clamp(y, 0, std::max(0, MusicBox_->height() - 1)));
}

void Picmain::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        zoomBy(*event);
        return event->accept();
    }
    zoomWheel_ = 0;
    if (!MusicBox_->isEnabled())
        return;
    const QPoint turned = event->angleDelta();
    const bool across = event->modifiers().testFlag(Qt::ShiftModifier) && turned.x() == 0;
    wheel_ += across ? QPoint(turned.y(), 0) : turned;
    // Touchpads turn by small parts of a step; what is left over counts for the next one.
    const QPoint steps(wheel_.x() * kColumnsOfNotch / kWheelStep, wheel_.y() * kRowsOfNotch / kWheelStep);
    wheel_ -= QPoint(steps.x() * kWheelStep / kColumnsOfNotch, steps.y() * kWheelStep / kRowsOfNotch);
    if (steps.x() != 0)
        advanceScroll(-steps.x());
    if (steps.y() != 0)
        advanceRows(-steps.y());
    event->accept();
}

void Picmain::keyPressEvent(QKeyEvent* event) {
    struct KeyRow {
        Qt::Key key;
        void (Picmain::*move)(int);
        int by;
    };
    static constexpr std::array kKeys{
        KeyRow{Qt::Key_Left, &Picmain::advanceScroll, -1}, KeyRow{Qt::Key_Right, &Picmain::advanceScroll, 1},
        KeyRow{Qt::Key_Up, &Picmain::advanceRows, -1},     KeyRow{Qt::Key_Down, &Picmain::advanceRows, 1},
        KeyRow{Qt::Key_PageUp, &Picmain::advancePage, -1}, KeyRow{Qt::Key_PageDown, &Picmain::advancePage, 1},
    };
    for (const KeyRow& row : kKeys)
        if (row.key == event->key() && event->modifiers() == Qt::NoModifier && MusicBox_->isEnabled())
            return (this->*row.move)(row.by);
    QWidget::keyPressEvent(event);
}

void Picmain::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    const QPoint at = event->position().toPoint();
    const bool onGuide = PicX_->geometry().contains(at);
    if (!onGuide && childAt(at)) // of the papers that are disabled while it plays
        return;
    if (event->button() == Qt::RightButton && onRightPress)
        onRightPress(onGuide ? Surface::Guide : Surface::None, event->globalPosition().toPoint());
    else if (event->button() == Qt::LeftButton && !onGuide)
        event->ignore(); // the bare ground moves the window
}

void Picmain::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    QPainter painter(this);
    for (const QWidget* paper : {Pic3_, Pic2a_, Beatbox_, MusicBox_})
        if (paper->isVisible())
            strokeRounded(painter, QRectF(paper->geometry()).adjusted(-1, -1, 1, 1), 0, toQColor(skin.line));
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
