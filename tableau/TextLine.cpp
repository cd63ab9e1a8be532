// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TextLine.h"

#include "parts/CommandBank.h"
#include "shell/Appearance.h"
#include "shell/SkinPainter.h"
#include "tableau/Commands.h"

#include <QLabel>
#include <QPainter>

namespace velmora {

namespace {
/// From left to right.
constexpr std::array kParts{lb1("erase"), lb1("chord"), lb1("menu"), lb1("tips")};
constexpr int kPartWidth = 57;
constexpr int kInset = 14;
} // namespace

TextLine::TextLine(const Appearance& look, const CommandBank& Lb1, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , text_(new QLabel(this))
    , caption_(new QLabel("Right-click", this)) {
    setObjectName("textLine");
    text_->setObjectName("toolText");
    caption_->setObjectName("rightClickCaption");
    caption_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    caption_->setForegroundRole(QPalette::PlaceholderText);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        parts_[i] = &Lb1[kParts[i]];
        parts_[i]->setParent(this);
    }
}

void TextLine::setText(const QString& caption, const QString& text) {
    const bool bare = caption.isEmpty() || text.trimmed().isEmpty();
    text_->setText(bare ? text.trimmed() : caption + QStringLiteral(":  ") + text);
}

void TextLine::layOut() {
    int x = width() - 22;
    for (std::size_t i = parts_.size(); i-- > 0;) {
        x -= kPartWidth - 1; // neighbours share a line
        parts_[i]->setGeometry(x, 2, kPartWidth, 20);
    }
    caption_->setGeometry(x - 8 - 80, 0, 80, height());
    text_->setGeometry(kInset, 0, std::max(0, x - 88 - 8 - kInset), height());
}

void TextLine::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    horizontalLine(painter, 0, 0, width(), toQColor(look_.skin().line));
}

} // namespace velmora
