// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/CdTrackList.h"

#include "base/DialogNames.h"
#include "shell/Appearance.h"
#include "shell/SkinPainter.h"
#include "studio/CdTracks.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

#include <array>
#include <utility>

namespace velmora {

namespace {
struct Column {
    const char* words;
    int width;
    Qt::Alignment side = Qt::AlignLeft;
};
enum ColumnNumber { NumberColumn, FileColumn, FormatColumn, LengthColumn };
constexpr std::array kColumns{Column{"#", 36}, Column{"File", 244}, Column{"Format", 124},
                              Column{"Length", 82, Qt::AlignRight}};
constexpr int kInset = 12;
constexpr int kNumberInset = 11;
constexpr int kRow = 20;
constexpr int kHeader = 24;
constexpr double kTellsApart = 1.25; ///< contrast of the chosen row and the others

int insetOf(int column) {
    return column == NumberColumn ? kNumberInset : kInset;
}

QString lengthText(std::int64_t sectors) {
    const auto seconds = sectors / kSectorsPerSecond;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}
} // namespace

/// The heads of the columns, on the skin's face.
class CdTrackList::Header : public QHeaderView {
public:
    Header(const Appearance& look, QWidget* parent) : QHeaderView(Qt::Horizontal, parent), look_(look) {
        setFixedHeight(kHeader);
        setSectionsClickable(false);
    }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int column) const override {
        const Skin& skin = look_.skin();
        painter->save();
        painter->fillRect(rect, downwards(skin.face, rect));
        horizontalLine(*painter, rect.left(), rect.bottom(), rect.width(), toQColor(skin.line));
        if (column > 0)
            verticalLine(*painter, rect.left(), rect.top() + 3, kHeader - 8, toQColor(skin.line));
        painter->setFont(textFont());
        painter->setPen(toQColor(skin.text));
        const Column& row = kColumns[static_cast<std::size_t>(column)];
        painter->drawText(rect.adjusted(insetOf(column), 0, -kInset + 1, -1), row.side | Qt::AlignVCenter,
                          QLatin1String(row.words));
        painter->restore();
    }
    void paintEvent(QPaintEvent* event) override {
        QHeaderView::paintEvent(event);
        // What no column covers.
        QPainter painter(viewport());
        const QRect rest(length(), 0, width() - length(), height());
        if (rest.width() <= 0)
            return;
        painter.fillRect(rest, downwards(look_.skin().face, rest));
        horizontalLine(painter, rest.left(), rest.bottom(), rest.width(), toQColor(look_.skin().line));
    }

private:
    const Appearance& look_;
};

CdTrackList::CdTrackList(const Appearance& look, QWidget* parent) : QTreeWidget(parent), look_(look) {
    setHeader(new Header(look, this));
    setColumnCount(static_cast<int>(kColumns.size()));
    QStringList words;
    for (const Column& column : kColumns)
        words << QLatin1String(column.words);
    setHeaderLabels(words);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(kRow);
    for (int i = 0; i < static_cast<int>(kColumns.size()); ++i) {
        header()->setSectionResizeMode(i, i == FileColumn ? QHeaderView::Stretch : QHeaderView::Fixed);
        header()->resizeSection(i, kColumns[static_cast<std::size_t>(i)].width);
    }
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setFrameShape(QFrame::StyledPanel);
    setAllColumnsShowFocus(true);
    setAccessibleName("Tracks");
}

void CdTrackList::show(const CdTracks& tracks, std::optional<std::size_t> chosen) {
    clear();
    for (const CdTrack& track : tracks.list()) {
        auto* row = new QTreeWidgetItem(this);
        row->setText(NumberColumn, QString::number(topLevelItemCount()));
        row->setText(FileColumn, textOfBytes(track.file.filename().string()));
        row->setText(FormatColumn, track.sound.kind == SoundKind::Wav ? "PCM WAV" : "MPEG-3 audio");
        row->setText(LengthColumn, lengthText(track.sectors));
        row->setTextAlignment(LengthColumn, Qt::AlignRight | Qt::AlignVCenter);
        for (int column = 0; column < columnCount(); ++column)
            row->setSizeHint(column, {0, kRow});
    }
    if (chosen && *chosen < tracks.list().size())
        setCurrentItem(topLevelItem(static_cast<int>(*chosen)));
}

std::optional<std::size_t> CdTrackList::chosen() const {
    const int row = currentItem() ? indexOfTopLevelItem(currentItem()) : -1;
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

void CdTrackList::setAtWork(std::optional<std::size_t> track) {
    atWork_ = track;
    if (track)
        scrollToItem(topLevelItem(static_cast<int>(*track)));
    viewport()->update();
}

void CdTrackList::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const Skin& skin = look_.skin();
    const QRect row(0, option.rect.top(), viewport()->width(), option.rect.height());
    const bool chosen = currentItem() && indexFromItem(currentItem()).row() == index.row();
    if (chosen) {
        const QRect bar = row.adjusted(1, 0, -1, 0);
        fillRounded(*painter, bar, fieldRadius(skin), downwards(skin.checked, row));
        if (contrast(skin.checked.from, skin.field) < kTellsApart)
            strokeRounded(*painter, bar, fieldRadius(skin), toQColor(skin.fieldEdge));
    }
    painter->setPen(toQColor(chosen ? skin.text : skin.fieldText));
    const bool bold = atWork_ == static_cast<std::size_t>(index.row());
    for (int column = 0; column < columnCount(); ++column) {
        const QFont font = textFont(12, bold && column == FileColumn);
        painter->setFont(font);
        const QRect cell(columnViewportPosition(column), row.top(), columnWidth(column), row.height());
        const QRect room = cell.adjusted(insetOf(column), 0, -kInset + 1, 0);
        const QString words = QFontMetrics(font).elidedText(index.siblingAtColumn(column).data().toString(),
                                                            Qt::ElideMiddle, room.width());
        painter->drawText(room, kColumns[static_cast<std::size_t>(column)].side | Qt::AlignVCenter, words);
    }
}

} // namespace velmora
