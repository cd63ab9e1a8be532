// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/PhrasePaper.h"

#include "parts/ChannelColours.h"
#include "shell/Appearance.h"
#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {
constexpr int kEdge = 1;
constexpr int kPlayedHeight = 21; ///< of the strip for what was played
constexpr int kPlayedTop = 8;
constexpr int kBar = 6;
constexpr double kLeft = 8; ///< so that an early note is seen
constexpr double kMostCell = 12;
constexpr double kMostRow = 8;
constexpr int kMargin = 2; ///< rows above the highest note and under the lowest
constexpr int kLeastRows = 12;
constexpr double kBallShare = 1.25; ///< of a row
constexpr double kMostBall = 10;

// Paper is white in every skin, and so is what is drawn on it the same.
constexpr Rgb kMeasureLine{68, 204, 255};
constexpr Rgb kBeatLine{201, 204, 216};
constexpr Rgb kPositionLine{237, 237, 237};
constexpr Rgb kPlayed{84, 90, 110};
/// The lines of both staves.
constexpr std::array kStaff{43, 47, 50, 53, 57, 64, 67, 71, 74, 77};
} // namespace

PhrasePaper::PhrasePaper(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setAccessibleName("What would be kept");
}

void PhrasePaper::show(const Phrase& phrase, const KeepPlan& plan, int notesPerMeasure) {
    phrase_ = phrase;
    plan_ = plan;
    notesPerMeasure_ = std::max(1, notesPerMeasure);
    setAccessibleDescription(
        QStringLiteral("%1 notes on %2 positions").arg(plan.notes.size()).arg(plan.end() - plan.mark));
    fit();
    update();
}

void PhrasePaper::resizeEvent(QResizeEvent* /*event*/) {
    fit();
}

void PhrasePaper::fit() {
    const int positions = std::max(1, plan_.end() - plan_.mark);
    cell_ = std::min(kMostCell, (width() - 2 * kEdge - kLeft - 2) / positions);
    int lowest = 60;
    int highest = 72;
    if (!plan_.notes.empty()) {
        const auto [low, high] = std::ranges::minmax(plan_.notes, {}, &KeptNote::note);
        lowest = low.note;
        highest = high.note;
    }
    const int rows = std::max(kLeastRows, highest - lowest + 1 + 2 * kMargin);
    row_ = std::min(kMostRow, (height() - kPlayedHeight - 2.0 * kEdge) / rows);
    topNote_ = (highest + lowest + rows) / 2;
}

double PhrasePaper::xOf(double position) const {
    return kEdge + kLeft + (position - plan_.mark) * cell_;
}

double PhrasePaper::yOf(int note) const {
    return kEdge + kPlayedHeight + (topNote_ - note + 0.5) * row_;
}

void PhrasePaper::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Skin& skin = look_.skin();
    const QColor edge = toQColor(skin.line);
    painter.fillRect(rect(), toQColor(kWhite));
    painter.save();
    painter.setClipRect(rect().adjusted(kEdge, kEdge, -kEdge, -kEdge));
    if (!plan_.notes.empty()) {
        paintLines(painter);
        paintKept(painter);
        paintPlayed(painter);
    }
    painter.restore();
    horizontalLine(painter, 0, kPlayedHeight, width(), edge);
    strokeRounded(painter, rect(), 0, edge);
}

void PhrasePaper::paintLines(QPainter& painter) const {
    const double perBeat = static_cast<double>(phrase_.meter.ticksPerBeat()) / plan_.ticksPerPosition;
    const auto last = static_cast<int>((width() - kLeft) / cell_) + plan_.mark;
    constexpr double kLeastCell = 4; // closer lines would be grey
    for (int position = plan_.mark; position <= last; ++position) {
        const bool measure = position % notesPerMeasure_ == 0;
        const bool beat = std::fmod(position % notesPerMeasure_, perBeat) < 0.001;
        if ((!measure && !beat && cell_ < kLeastCell) || (!measure && cell_ * perBeat < kLeastCell) ||
            cell_ * notesPerMeasure_ < kLeastCell)
            continue;
        verticalLine(painter, xOf(position), 0, height(),
                     toQColor(measure ? kMeasureLine
                              : beat  ? kBeatLine
                                      : kPositionLine));
    }
    for (const int note : kStaff)
        if (note <= topNote_ && yOf(note) < height())
            horizontalLine(painter, 0, yOf(note), width(), toQColor(kBlack));
}

void PhrasePaper::paintPlayed(QPainter& painter) const {
    const double perBeat = static_cast<double>(phrase_.meter.ticksPerBeat()) / plan_.ticksPerPosition;
    const auto xAt = [&](double moment) {
        return xOf(plan_.mark + (phrase_.pulse.beatAt(moment) - plan_.firstBeat) * perBeat);
    };
    for (const PlayedNote& note : phrase_.notes) {
        const double left = xAt(note.onset);
        const double right = std::max(left + 2, xAt(note.end) - 1);
        fillRounded(painter, {left, kPlayedTop, right - left, kBar}, 2, toQColor(kPlayed));
    }
}

void PhrasePaper::paintKept(QPainter& painter) const {
    const double ball = std::clamp(std::min(row_ * kBallShare, cell_), 3.0, kMostBall);
    const double bar = std::clamp(row_ / 2, 1.0, 4.0);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const KeptNote& note : plan_.notes) {
        const QColor colour = toQColor(kChannelColours[note.channel].bright);
        const double left = xOf(note.first);
        painter.fillRect(QRectF(left + 2, yOf(note.note) - bar / 2,
                                std::max(1.0, (note.last - note.first + 1) * cell_ - 3), bar),
                         colour);
    }
    for (const KeptNote& note : plan_.notes) {
        painter.setPen(QPen(toQColor(kBlack), ball > 4 ? 1 : 0.5));
        painter.setBrush(toQColor(kChannelColours[note.channel].bright));
        const QPointF middle(xOf(note.first) + ball / 2 + 0.5, yOf(note.note));
        painter.drawEllipse(middle, ball / 2, ball / 2);
        if (ball < kMostBall)
            continue;
        painter.setPen(Qt::NoPen);
        painter.setBrush(toQColor(kWhite));
        painter.drawEllipse(middle - QPointF(2, 2), 1, 1);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace velmora
