// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TopBarOverlay.h"

#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "tableau/ChannelColours.h"

#include <QLabel>
#include <QPainter>

namespace velmora {

namespace {
struct FieldRow {
    const char* name;
    const char* caption; ///< before the value
    const char* title;   ///< of its tip
    const char* tip;
    int full; ///< room for the value
    int compact;
};
constexpr std::array<FieldRow, 7> kFieldRows{{
    {"LblNote", "Note", "Note", "Number of the note, counted from 1", 44, 24},
    {"LblNoteName", "Name", "Name", "Name of the note", 44, 28},
    {"Label7", "Chord", "Chord", "The notes of its chord", 200, 172},
    {"LblVol", "Vol", "Volume", "Volume of the note", 40, 28},
    {"LblInst", "Inst", "Instrument", "Instrument of the note", 168, 76},
    {"LblTrk", "Trk", "Track", "The active channel", 16, 16},
    {"LblNumnotes", "", "Notes", "Length of the score", 80, 80},
}};
} // namespace

/// A value, with an ellipsis where it has no room.
class TopBarOverlay::ReadOut : public QLabel {
public:
    using QLabel::QLabel;

    [[nodiscard]] bool isCut() const { return fontMetrics().horizontalAdvance(text()) > width(); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideRight, width()));
    }
};

TopBarOverlay::TopBarOverlay(const Appearance& look, ExToolTip& tips, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , tips_(tips) {
    setObjectName("TopBarOverlay");
    for (std::size_t i = 0; i < values_.size(); ++i) {
        values_[i] = new ReadOut(this);
        values_[i]->setObjectName(kFieldRows[i].name);
        values_[i]->setFont(textFont(12, true));
        values_[i]->setForegroundRole(QPalette::Text);
    }
    values_[LblNumnotes]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    values_[LblTrk]->setAlignment(Qt::AlignCenter);
    for (int i = 0; i < kFields; ++i)
        setField(static_cast<Field>(i), {});
}

void TopBarOverlay::setField(Field field, const QString& text) {
    ReadOut& value = *values_[field];
    const FieldRow& row = kFieldRows[static_cast<std::size_t>(field)];
    value.setText(text);
    value.setAccessibleName(QString::fromLatin1(row.title) + ' ' + text);
    const QString whole = value.isCut() ? text + '\n' : QString();
    tips_.SetToolTip(value, {row.title, whole + row.tip, ""});
}

QString TopBarOverlay::field(Field field) const {
    return values_[field]->text();
}

void TopBarOverlay::showTrack(int channel) {
    track_ = channel;
    QPalette palette = values_[LblTrk]->palette();
    const Rgb ground = kChannelColours[static_cast<std::size_t>(channel)].bright;
    palette.setColor(QPalette::Text, toQColor(inkOnColour(ground)));
    values_[LblTrk]->setPalette(palette);
    setField(LblTrk, QString::number(channel + 1));
    update();
}

void TopBarOverlay::layOut(FormWidth width) {
    width_ = width;
    const bool captions = width != FormWidth::Small;
    const QFontMetrics small(textFont(10));
    rules_.clear();
    int x = 12;
    for (std::size_t i = 0; i < LblNumnotes; ++i) {
        captionAt_[i] = x;
        if (captions)
            x += small.horizontalAdvance(QLatin1String(kFieldRows[i].caption)) + 8;
        const int room = width == FormWidth::Full ? kFieldRows[i].full : kFieldRows[i].compact;
        values_[i]->setGeometry(x, 2, room, height() - 4);
        x += room + 8;
        if (i < LblTrk)
            rules_.push_back(x - 4);
        x += 4;
    }
    const int room = std::max(0, std::min(this->width() - 12 - x, 96));
    values_[LblNumnotes]->setGeometry(this->width() - 12 - room, 2, room, height() - 4);
    for (int i = 0; i < kFields; ++i) // what is cut has changed
        setField(static_cast<Field>(i), values_[static_cast<std::size_t>(i)]->text());
    update();
}

void TopBarOverlay::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    QPainter painter(this);
    paintReadOut(painter, skin, rect());
    for (const int x : rules_)
        verticalLine(painter, x, 4, height() - 8, toQColor(skin.line));
    fillRounded(painter, values_[LblTrk]->geometry().adjusted(0, 2, 0, -2), 2,
                toQColor(kChannelColours[static_cast<std::size_t>(track_)].bright));
    if (width_ == FormWidth::Small)
        return;
    painter.setPen(toQColor(skin.dim));
    painter.setFont(textFont(10));
    for (std::size_t i = 0; i < LblNumnotes; ++i)
        painter.drawText(QRect(captionAt_[i], 0, 60, height()), Qt::AlignLeft | Qt::AlignVCenter,
                         QLatin1String(kFieldRows[i].caption));
}

} // namespace velmora
