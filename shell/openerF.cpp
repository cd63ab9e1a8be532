// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/openerF.h"

#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QtWidgets>

namespace velmora {

namespace {
constexpr QSize kSize(480, 300);
constexpr QSize kPicture(448, 172);
constexpr int kColumn = 12;
constexpr int kMeasure = 16; ///< columns
constexpr int kRow = 8;
constexpr int kNameHeight = 56;
constexpr Rgb kCellLine{237, 237, 237};
constexpr Rgb kMeasureLine{68, 204, 255};
constexpr Rgb kMelody{255, 0, 0};
constexpr Rgb kBass{255, 192, 255};

/// A note of the picture: first column, columns, row, a ring for a chord.
struct Note {
    int column;
    int columns;
    int row;
    bool chord = false;
};
constexpr auto kMelodyNotes = std::to_array<Note>({
    {1, 4, 5, true},
    {5, 2, 4},
    {7, 2, 3},
    {9, 6, 1},
    {15, 2, 2},
    {17, 4, 3, true},
    {21, 2, 2},
    {23, 2, 0},
    {25, 4, 1},
    {29, 4, 4},
    {33, 5, 2, true},
});
constexpr auto kBassNotes = std::to_array<Note>({{1, 8, 8}, {9, 8, 9}, {17, 8, 10}, {25, 8, 8}, {33, 5, 9}});

void paintNote(QPainter& painter, const Note& note, Rgb colour) {
    const QPointF ball(note.column * kColumn + 5.5, 24 + note.row * kRow + 0.5);
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(toQColor(colour));
    if (note.chord)
        painter.drawEllipse(ball, 7, 7);
    painter.fillRect(QRectF(ball.x() - 3.5, ball.y() - 1.5, note.columns * kColumn - 2, 4), toQColor(colour));
    painter.drawEllipse(ball, 5, 5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(ball - QPointF(2, 2), 1.5, 1.5);
}

/// A piece of the Tableau with the program's name under it.
class Picture : public QWidget {
public:
    Picture(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
        setObjectName("picture");
        setAccessibleName("Velmora");
        setFixedSize(kPicture);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        QPainterPath rounded;
        const int radius = groupRadius(look_.skin());
        rounded.addRoundedRect(rect(), radius, radius);
        painter.setClipPath(rounded);
        painter.fillRect(rect(), Qt::white);
        paintTableau(painter);
        painter.fillRect(QRect(0, height() - kNameHeight, width(), kNameHeight), Qt::white);
        horizontalLine(painter, 0, height() - kNameHeight - 1, width(), QColor(201, 204, 216));
        paintName(painter);
        painter.setClipping(false);
        strokeRounded(painter, rect(), radius, toQColor(look_.skin().line));
    }

private:
    void paintTableau(QPainter& painter) const {
        for (int column = 0; column * kColumn < width(); ++column) {
            const bool measure = column > 0 && column % kMeasure == 0;
            verticalLine(painter, column * kColumn, 0, height(),
                         toQColor(measure ? kMeasureLine : kCellLine));
        }
        for (int line = 0; line < 5; ++line)
            horizontalLine(painter, 0, 24 + line * 2 * kRow, width(), Qt::black);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const Note& note : kBassNotes)
            paintNote(painter, note, kBass);
        for (const Note& note : kMelodyNotes)
            paintNote(painter, note, kMelody);
    }
    /// In the darkest tone of the title, if that reads on white.
    void paintName(QPainter& painter) const {
        const Skin& skin = look_.skin();
        const Rgb tone = skin.titleStops.back().colour;
        const Rgb ink = contrast(tone, kWhite) >= 4.5          ? tone
                        : contrast(skin.accent, kWhite) >= 4.5 ? skin.accent
                                                               : kBlack;
        painter.setFont(titleFont(32));
        painter.setPen(toQColor(ink));
        painter.drawText(QRect(16, height() - kNameHeight, width(), kNameHeight), Qt::AlignVCenter,
                         "Velmora");
    }

    const Appearance& look_;
};
} // namespace

openerF::openerF(frmskins& skins, ExToolTip& tips) : SkinnedWindow(skins, {}) {
    setObjectName("openerF");
    setWindowTitle("Velmora ");
    setFixedSize(kSize);
    const auto place = [](QWidget* widget, int x, int y) { widget->move(x, y - kTitleHeight); };
    auto* picture = new Picture(look(), Ibak5());
    place(picture, 16, 44);
    auto* label = new QLabel("Integrated Notation Interface   ", Ibak5());
    label->setObjectName("Label4");
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setGeometry(16, 228 - kTitleHeight, 248, 16);

    auto* start = new CommandButton(look(), ButtonForm::Text, Ibak5());
    start->setObjectName("Command2");
    start->setFace("", "Start Program");
    start->setGeometry(kSize.width() - 16 - 88 - 8 - 112, kSize.height() - 48 - kTitleHeight, 112, 32);
    auto* exit = new CommandButton(look(), ButtonForm::Text, Ibak5());
    exit->setObjectName("Command1");
    exit->setFace("", "Exit");
    exit->setGeometry(kSize.width() - 16 - 88, kSize.height() - 48 - kTitleHeight, 88, 32);
    connect(start, &QAbstractButton::clicked, this, [this] { Command2_Click(); });
    connect(exit, &QAbstractButton::clicked, this, [this] { Command1_Click(); });
    attachTips(tips);
    tips.SetToolTip(*start, {"Start Program", "Open the composing window", ""});
    tips.SetToolTip(*exit, {"Exit", "Close the program", ""});
    start->setFocus();
}

bool openerF::event(QEvent* event) {
    const bool handled = SkinnedWindow::event(event);
    // Enter starts the program: the ring shows it, as soon as keys reach the window.
    if (event->type() == QEvent::WindowActivate)
        showFocusRing();
    return handled;
}

void openerF::Command2_Click() {
    if (std::exchange(started_, true))
        return;
    if (onStart)
        onStart();
    hide();
}

void openerF::Command1_Click() {
    close();
}

void openerF::closeEvent(QCloseEvent* event) {
    event->accept();
    if (!started_ && onExit)
        onExit();
}

void openerF::keyPressEvent(QKeyEvent* event) {
    const auto* exit = findChild<CommandButton*>("Command1");
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (exit->hasFocus())
            Command1_Click();
        else
            Command2_Click();
        break;
    case Qt::Key_Escape:
        Command1_Click();
        break;
    default:
        SkinnedWindow::keyPressEvent(event);
    }
}

} // namespace velmora
