// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpListDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>

namespace velmora {

namespace {

constexpr int kInset = 8;
constexpr int kPadding = 4;
constexpr int kExcerptLines = 2;

QString excerptOf(const QModelIndex& index) {
    return index.data(HelpListDelegate::kExcerptRole).toString();
}

QFont titleFont(const QStyleOptionViewItem& option, bool bold) {
    QFont font = option.font;
    font.setBold(bold);
    return font;
}

QFont excerptFont(const QStyleOptionViewItem& option) {
    QFont font = option.font;
    font.setPixelSize(qMax(10, QFontInfo(font).pixelSize() - 2));
    return font;
}

/// The text in lines of that width, what is too much elided at the end of the last.
QStringList linesOf(const QString& text, const QFont& font, int width) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() + 1 == kExcerptLines) {
            lines << QFontMetrics(font).elidedText(text.mid(line.textStart()), Qt::ElideRight, width);
            break;
        }
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

QPalette::ColorGroup groupOf(const QStyleOptionViewItem& option) {
    if ((option.state & QStyle::State_Enabled) == 0)
        return QPalette::Disabled;
    return (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
}

/// Text three quarters as strong as the row's own, so that it stands back and is still read with ease.
QColor quieter(const QColor& text, const QColor& ground) {
    return QColor::fromRgbF(text.redF() * 0.75F + ground.redF() * 0.25F,
                            text.greenF() * 0.75F + ground.greenF() * 0.25F,
                            text.blueF() * 0.75F + ground.blueF() * 0.25F);
}

} // namespace

void HelpListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const QString title = row.text;
    row.text.clear();
    const QStyle* style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    const bool selected = (row.state & QStyle::State_Selected) != 0;
    const QColor text =
        row.palette.color(groupOf(row), selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor ground = row.palette.color(groupOf(row), selected ? QPalette::Highlight : QPalette::Base);
    const QString excerpt = excerptOf(index);
    QRect box = option.rect.adjusted(kInset, kPadding, -kInset, -kPadding);

    painter->save();
    painter->setPen(text);
    painter->setFont(titleFont(row, !excerpt.isEmpty()));
    const QFontMetrics titleSize(painter->font());
    painter->drawText(box, Qt::AlignLeft | Qt::AlignTop,
                      titleSize.elidedText(title, Qt::ElideRight, box.width()));
    box.setTop(box.top() + titleSize.height());
    painter->setPen(quieter(text, ground));
    painter->setFont(excerptFont(row));
    for (const QString& line : linesOf(excerpt, painter->font(), box.width())) {
        painter->drawText(box, Qt::AlignLeft | Qt::AlignTop, line);
        box.setTop(box.top() + QFontMetrics(painter->font()).height());
    }
    painter->restore();
}

QSize HelpListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString excerpt = excerptOf(index);
    const int title = QFontMetrics(titleFont(option, !excerpt.isEmpty())).height();
    const int under = excerpt.isEmpty() ? 0 : kExcerptLines * QFontMetrics(excerptFont(option)).height();
    return {0, title + under + 2 * kPadding};
}

} // namespace velmora
