// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/GuidePainter.h"

#include "score/Score.h"
#include "shell/SkinPainter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <algorithm>

namespace velmora {

namespace {
constexpr Rgb kGround{102, 122, 121}; ///< the one lightness on which white and black names both read
constexpr int kTextToLine = 5;        ///< from the top of a name to the line through its row
constexpr int kRightMargin = 8;
constexpr int kSmallRows = 9; ///< rows lower than this get the smaller font
/// 6 and 7 points on a screen of 96 dots an inch.
constexpr int kSmallFont = 8;
constexpr int kFont = 9;
constexpr int kLargestFont = 15; ///< a wider name would have no room
constexpr int kCapitalHalf = 3;  ///< of the height of capitals in either font

bool isStaffRow(int row) {
    return std::ranges::find(kTrebleRows, row) != kTrebleRows.end() ||
           std::ranges::find(kBassRows, row) != kBassRows.end();
}
QString nameOf(int row) {
    return QString::fromStdString(NoteNames()[static_cast<std::size_t>(row)]);
}
/// The first row in view that has a name.
int firstRow(const ViewState& view) {
    return std::max(view.ViewTopRow, 0);
}
} // namespace

double staffLineY(int row, int topRow, int lineHeight) {
    return (static_cast<double>(row) - topRow) * lineHeight + kTextToLine;
}

bool isSharpRow(int row) {
    return row >= 0 && row <= kLastRow && NoteNames()[static_cast<std::size_t>(row)].back() == '#';
}

int rowNameSize(int lineHeight, RowNames names) {
    if (lineHeight < kSmallRows)
        return kSmallFont;
    return names == RowNames::Growing ? std::clamp(lineHeight * 3 / 4, kFont, kLargestFont) : kFont;
}

void paintGuide(QPainter& painter, const QRect& picX, const ViewState& view, RowNames names) {
    painter.save();
    painter.setClipRect(picX);
    painter.fillRect(picX, toQColor(kGround));
    const int size = rowNameSize(view.Line_Height, names);
    painter.setFont(textFont(size));
    const QFontMetricsF metrics(painter.font());
    // In the middle of the line through the row.
    const int baseline = kTextToLine + std::max(kCapitalHalf, size * kCapitalHalf / kFont);
    for (int row = firstRow(view); row <= view.ViewBottomRow(); ++row) {
        const double y = picX.top() + (static_cast<double>(row) - view.ViewTopRow) * view.Line_Height;
        if (y > picX.bottom())
            break;
        painter.setPen(isStaffRow(row) ? Qt::black : Qt::white);
        const QString name = nameOf(row);
        painter.drawText(
            QPointF(picX.right() + 1 - kRightMargin - metrics.horizontalAdvance(name), y + baseline), name);
    }
    painter.restore();
}

QString sideBarText(const ViewState& view) {
    QStringList names;
    for (int row = firstRow(view); row <= view.ViewBottomRow(); ++row)
        names << nameOf(row);
    return names.join(u'\n');
}

} // namespace velmora
