// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace velmora {

/// Paints a row of the help's list: a page's title, and under it, if it was found by a search, some words
/// around what was found.
class HelpListDelegate : public QStyledItemDelegate {
public:
    static constexpr int kExcerptRole = Qt::UserRole + 1;

    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace velmora
