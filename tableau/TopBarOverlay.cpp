// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TopBarOverlay.h"

#include "parts/ChannelColours.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QLabel>
#include <QPainter>

namespace velmora {

namespace {
/// Whose caption stays where there is little room: a bare number tells nobody what it counts.
enum class Caption : std::uint8_t { WhereRoom, Always };
struct FieldRow {
    const char* name;
    const char* caption; ///< before the value
    Caption shown;
    const char* title; ///< of its tip
    const char* tip;
    int full; ///< room for the value
    int compact;
};
constexpr std::array<FieldRow, 7> kFieldRows{{
    {"LblNote", "Note", Caption::Always, "Note", "Number of the note, counted from 1", 44, 24},
    {"LblNoteName", "Name", Caption::WhereRoom, "Name", "Name of the note", 44, 28},
    {"Label7", "Chord", Caption::WhereRoom, "Chord", "The notes of its chord", 200, 172},
    {"LblVol", "Vol", Caption::Always, "Volume", "Volume of the note", 40, 28},
    {"LblInst", "Inst", Caption::WhereRoom, "Instrument", "Instrument of the note", 168, 76},
    {"LblTrk", "Trk", Caption::WhereRoom, "Track", "The active channel", 16, 16},
    {"LblNumnotes", "", Caption::WhereRoom, "Notes", "Length of the score", 80, 80},
}};
constexpr int kBetween = 12; ///< from a value to the next caption
constexpr int kMostNotes = 96;
constexpr int kLeastChord = 96;

bool hasCaption(const FieldRow& row, FormWidth width) {
    return width != FormWidth::Small || row.shown == Caption::Always;
}

int captionRoom(const FieldRow& row, FormWidth width) {
    if (!hasCaption(row, width))
        return 0;
    return QFontMetrics(textFont(10)).horizontalAdvance(QLatin1String(row.caption)) + 8;
}
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

void TopBarOverlay::showTrack(int channel, const QString& number) {
    track_ = channel;
    QPalette palette = values_[LblTrk]->palette();
    const Rgb ground = kChannelColours[channel].bright;
    palette.setColor(QPalette::Text, toQColor(inkOnColour(ground)));
    values_[LblTrk]->setPalette(palette);
    setField(LblTrk, number);
    update();
}

void TopBarOverlay::layOut(FormWidth width) {
    width_ = width;
    const auto rooms = roomsOfValues();
    rules_.clear();
    int x = kMargin;
    for (std::size_t i = 0; i < LblNumnotes; ++i) {
        captionAt_[i] = x;
        x += captionRoom(kFieldRows[i], width);
        values_[i]->setGeometry(x, 2, rooms[i], height() - 4);
        x += rooms[i] + kBetween;
        if (i < LblTrk)
            rules_.push_back(x - 8);
    }
    const int room = std::max(0, std::min(this->width() - kMargin - x, kMostNotes));
    values_[LblNumnotes]->setGeometry(this->width() - kMargin - room, 2, room, height() - 4);
    for (int i = 0; i < kFields; ++i) // what is cut has changed
        setField(static_cast<Field>(i), values_[static_cast<std::size_t>(i)]->text());
    update();
}

/// What the compact form leaves free goes to the instrument and then to the chord, whose words are long.
std::array<int, TopBarOverlay::LblNumnotes> TopBarOverlay::roomsOfValues() const {
    std::array<int, LblNumnotes> rooms{};
    int spare = width() - 2 * kMargin - kMostNotes;
    for (std::size_t i = 0; i < rooms.size(); ++i) {
        const FieldRow& row = kFieldRows[i];
        rooms[i] = width_ == FormWidth::Full ? row.full : row.compact;
        spare -= rooms[i] + kBetween + captionRoom(row, width_);
    }
    // In a small window two captions take their room from the chord.
    rooms[Label7] += std::clamp(spare, kLeastChord - rooms[Label7], 0);
    spare = std::max(0, spare);
    for (const Field field : {LblInst, Label7}) {
        const int more = std::clamp(kFieldRows[field].full - rooms[field], 0, std::max(0, spare));
        rooms[field] += more;
        spare -= more;
    }
    return rooms;
}

void TopBarOverlay::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    QPainter painter(this);
    paintReadOut(painter, skin, rect());
    for (const int x : rules_)
        verticalLine(painter, x, 4, height() - 8, toQColor(skin.line));
    fillRounded(painter, values_[LblTrk]->geometry().adjusted(0, 2, 0, -2), 2,
                toQColor(kChannelColours[track_].bright));
    painter.setPen(toQColor(skin.dim));
    painter.setFont(textFont(10));
    for (std::size_t i = 0; i < LblNumnotes; ++i)
        if (hasCaption(kFieldRows[i], width_))
            painter.drawText(QRect(captionAt_[i], 0, 60, height()), Qt::AlignLeft | Qt::AlignVCenter,
                             QLatin1String(kFieldRows[i].caption));
}

} // namespace velmora
