// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpDocument.h"

#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextLayout>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <array>
#include <vector>

namespace velmora {

namespace {

struct HeadingStyle {
    int pixels;
    int above;
    int below;
};
constexpr std::array<HeadingStyle, 3> kHeadings{{{18, 0, 8}, {14, 16, 4}, {12, 12, 4}}};

constexpr int kParagraphGap = 8;
constexpr int kItemGap = 4;
constexpr int kCellPadding = 5;
constexpr int kLineHeight = 130; ///< per cent of the font's own; cells have their padding instead
constexpr int kListIndent = 20;
constexpr int kFirstColumn = 168; ///< alike in all tables, so that they stand in line
constexpr int kThirdColumn = 84;

const HeadingStyle& styleOfHeading(int level) {
    return kHeadings[std::min<std::size_t>(static_cast<std::size_t>(level), kHeadings.size()) - 1];
}

bool isLastOfList(const QTextBlock& block) {
    return block.textList() != nullptr && block.next().textList() != block.textList();
}

void styleBlock(const QTextBlock& block) {
    QTextBlockFormat format = block.blockFormat();
    const bool inTable = QTextCursor(block).currentTable() != nullptr;
    const bool inList = block.textList() != nullptr && !isLastOfList(block);
    format.setTopMargin(0);
    format.setBottomMargin(inTable ? 0 : inList ? kItemGap : kParagraphGap);
    format.setLineHeight(inTable ? 100 : kLineHeight, QTextBlockFormat::ProportionalHeight);
    if (format.headingLevel() > 0) {
        format.setTopMargin(styleOfHeading(format.headingLevel()).above);
        format.setBottomMargin(styleOfHeading(format.headingLevel()).below);
    }
    QTextCursor(block).setBlockFormat(format);
}

/// The reader of Markdown gives headings relative sizes, and links the application's colour, which need not
/// be this palette's.
void styleText(const QTextBlock& block, const QPalette& palette) {
    std::vector<QTextLayout::FormatRange> pieces; // all first: a change makes the block's iterators stale
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment piece = it.fragment();
        pieces.push_back({piece.position(), piece.length(), piece.charFormat()});
    }
    for (auto& [start, length, format] : pieces) {
        if (const int level = block.blockFormat().headingLevel(); level > 0) {
            format.clearProperty(QTextFormat::FontSizeAdjustment); // it would win over the size
            format.setProperty(QTextFormat::FontPixelSize, styleOfHeading(level).pixels);
        }
        if (format.isAnchor()) {
            format.setForeground(palette.link());
            format.setFontUnderline(true);
        }
        QTextCursor cursor(block);
        cursor.setPosition(start);
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(format);
    }
}

void styleTable(QTextTable& table, const QPalette& palette) {
    QTextTableFormat format = table.format();
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(palette.mid());
    format.setBorderCollapse(true);
    format.setCellPadding(kCellPadding);
    format.setCellSpacing(0);
    format.setTopMargin(kItemGap);
    format.setBottomMargin(kParagraphGap);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    QList<QTextLength> columns(table.columns());
    columns.first() = QTextLength(QTextLength::FixedLength, kFirstColumn);
    if (columns.size() == 3)
        columns.last() = QTextLength(QTextLength::FixedLength, kThirdColumn);
    format.setColumnWidthConstraints(columns);
    table.setFormat(format);
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell cell = table.cellAt(0, column);
        QTextTableCellFormat head = cell.format().toTableCellFormat();
        head.setBackground(palette.window());
        cell.setFormat(head);
    }
}

} // namespace

void loadHelpPage(QTextDocument& document, const QString& markdown) {
    document.setMarkdown(markdown, QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
                                       QTextDocument::MarkdownNoHTML);
}

void styleHelpPage(QTextDocument& document, const QPalette& palette) {
    document.setUndoRedoEnabled(false);
    document.setIndentWidth(kListIndent);
    QTextCursor everything(&document);
    everything.beginEditBlock(); // laid out once, at its end
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        styleBlock(block);
        styleText(block, palette);
    }
    for (auto* frame : document.rootFrame()->childFrames())
        if (auto* table = qobject_cast<QTextTable*>(frame))
            styleTable(*table, palette);
    everything.endEditBlock();
}

} // namespace velmora
