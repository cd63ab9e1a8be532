// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/FrmInst.h"

#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "score/Score.h"
#include "shell/ExToolTip.h"
#include "shell/MessageBox.h"
#include "sound/Instruments.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>

namespace velmora {

namespace {
constexpr QSize kSize(480, 440);
constexpr int kMargin = 12;
constexpr int kListWidth = (kSize.width() - 3 * kMargin) / 2;
constexpr int kListTop = 32; ///< under the title
constexpr QSize kButton(88, 32);
constexpr int kButtonTop = kSize.height() - kTitleHeight - kMargin - 32;

void fill(QListWidget& list, int first, int last) {
    for (int identifier = first; identifier <= last; ++identifier)
        list.addItem(toQString(nameOfIdentifier(identifier)));
}

/// -1 for none: an entry that only has the focus is not selected.
int selectedRow(const QListWidget& list) {
    const auto rows = list.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.front().row();
}

void select(QListWidget& list, const std::string& name) {
    list.clearSelection();
    for (int row = 0; row < std::min(list.count(), kInstrumentCount); ++row)
        if (list.item(row)->text() == toQString(name)) {
            list.setCurrentRow(row);
            list.scrollToItem(list.item(row), QAbstractItemView::PositionAtCenter);
            return;
        }
}
} // namespace

FrmInst::FrmInst(Desk& desk, QWidget* owner)
    : SkinnedWindow(desk.skins, {}, owner, Qt::Dialog)
    , desk_(desk)
    , LstInstruments(addList("LstInstruments", "Melody", kMargin))
    , LstInstruments2(addList("LstInstruments2", "Percussion", 2 * kMargin + kListWidth))
    , CmdOk(addButton("CmdOk", "&Ok", kSize.width() - kMargin - 2 * kButton.width() - 8))
    , CmdCancel(addButton("CmdCancel", "&Cancel", kSize.width() - kMargin - kButton.width()))
    , sample_(desk.port) {
    setObjectName("FrmInst");
    setWindowTitle("Velmora  INSTRUMENTS");
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(kSize);
    fill(*LstInstruments, kFirstInstrumentIdentifier, kLastInstrumentIdentifier);
    fill(*LstInstruments2, kFirstPercussionIdentifier, kLastPercussionIdentifier);
    CmdOk->setDefault(true);

    connect(LstInstruments, &QListWidget::itemDoubleClicked, this, [this] { LstInstruments_DblClick(); });
    connect(LstInstruments2, &QListWidget::itemDoubleClicked, this, [this] { LstInstruments2_DblClick(); });
    connect(CmdOk, &QPushButton::clicked, this, [this] { CmdOk_Click(); });
    connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
    attachTips(desk_.tips);
    desk_.tips.SetToolTip(*LstInstruments,
                          {"Melody", "Instruments. A click lets you hear one, a double click picks it", ""});
    desk_.tips.SetToolTip(
        *LstInstruments2,
        {"Percussion", "Percussion sounds. A click lets you hear one, a double click picks it", ""});
    desk_.tips.SetToolTip(*CmdOk, {"Ok", "Pick what is selected", ""});
    desk_.tips.SetToolTip(*CmdCancel, {"Cancel", "Keep the instruments as they are", ""});
    selectCurrent();
    letHear(*LstInstruments, 0);
    letHear(*LstInstruments2, kFirstPercussionCode);
    LstInstruments->setFocus();
}

QListWidget* FrmInst::addList(const char* name, const char* heading, int x) {
    auto* words = new QLabel(heading, Ibak5());
    QFont bold = words->font();
    bold.setBold(true);
    words->setFont(bold);
    words->setGeometry(x, 8, kListWidth, 20);
    auto* list = new QListWidget(Ibak5());
    list->setObjectName(name);
    list->setAccessibleName(heading);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setUniformItemSizes(true);
    list->setGeometry(x, kListTop, kListWidth, kButtonTop - kMargin - kListTop);
    return list;
}

QPushButton* FrmInst::addButton(const char* name, const char* caption, int x) {
    auto* button = new QPushButton(caption, Ibak5());
    button->setObjectName(name);
    button->setGeometry(QRect(QPoint(x, kButtonTop), kButton));
    return button;
}

void FrmInst::selectCurrent() {
    const InstrumentSelection& chosen = desk_.workspace.instruments;
    select(*LstInstruments, chosen.MelodyInstrumentName);
    select(*LstInstruments2, chosen.PercussionInstrumentName);
}

/// By mouse and by key; a press on the entry that is selected lets it be heard once more.
void FrmInst::letHear(QListWidget& list, int firstCode) {
    const auto hear = [this, &list, firstCode] { this->hear(list, firstCode); };
    connect(&list, &QListWidget::itemSelectionChanged, this, hear);
    connect(&list, &QListWidget::itemPressed, this, hear);
}

void FrmInst::hear(const QListWidget& list, int firstCode) {
    const int row = selectedRow(list);
    if (row < 0 || !isVisible() || desk_.workspace.play.Playing)
        return sample_.stop();
    if (sample_.playing() != firstCode + row)
        sample_.play(firstCode + row);
}

void FrmInst::open() {
    const QWidget* root = parentWidget();
    while (root && root->parentWidget())
        root = root->parentWidget();
    const QRect around = root ? root->geometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
    show();
    activateWindow();
}

std::int16_t FrmInst::codeFor(PickedInstrument picked, int channel, const InstrumentSelection& chosen) {
    const bool melody = picked.melody && (!picked.percussion || channel < kMelodyChannels);
    return melody ? chosen.MelodyInstrument : chosen.PercussionInstrument;
}

void FrmInst::CmdOk_Click() {
    const int row = selectedRow(*LstInstruments);
    if (row < 0) {
        tell(skins(), this, "Make a selection");
        return;
    }
    InstrumentSelection& chosen = desk_.workspace.instruments;
    PickedInstrument picked;
    if (chosen.PickSecond) {
        chosen.SecondInstrumentName = nameOfIdentifier(kFirstInstrumentIdentifier + row);
        chosen.SecondInstrument = static_cast<std::int16_t>(row);
    } else {
        takeMelody(row);
        picked.melody = true;
        const int beat = selectedRow(*LstInstruments2);
        picked.percussion =
            beat >= 0 && LstInstruments2->item(beat)->text() != toQString(chosen.PercussionInstrumentName);
        if (picked.percussion)
            takePercussion(beat);
    }
    finish(picked);
}

void FrmInst::LstInstruments2_DblClick() {
    const int row = selectedRow(*LstInstruments2);
    if (row < 0) {
        tell(skins(), this, "Make a selection");
        return;
    }
    takePercussion(row);
    finish({.percussion = true});
}

void FrmInst::takeMelody(int row) {
    InstrumentSelection& chosen = desk_.workspace.instruments;
    chosen.MelodyInstrumentName = nameOfIdentifier(kFirstInstrumentIdentifier + row);
    chosen.MelodyInstrument = static_cast<std::int16_t>(row);
    settings::save(desk_.settings, settings::Intrumentval, chosen.MelodyInstrument);
}

void FrmInst::takePercussion(int row) {
    InstrumentSelection& chosen = desk_.workspace.instruments;
    chosen.PercussionInstrumentName = nameOfIdentifier(kFirstPercussionIdentifier + row);
    chosen.PercussionInstrument = static_cast<std::int16_t>(kFirstPercussionCode + row);
    settings::save(desk_.settings, settings::Intrumentval2, chosen.PercussionInstrument);
}

void FrmInst::finish(PickedInstrument picked) {
    close();
    announce(desk_.workspace, Change::Instruments);
    if (onPicked)
        onPicked(picked);
}

/// The keys go on where the picker was asked for.
void FrmInst::closeEvent(QCloseEvent* event) {
    event->accept();
    if (parentWidget())
        parentWidget()->window()->activateWindow();
}

void FrmInst::hideEvent(QHideEvent* event) {
    sample_.stop();
    SkinnedWindow::hideEvent(event);
}

void FrmInst::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (CmdCancel->hasFocus())
            CmdCancel_Click();
        else if (LstInstruments2->hasFocus())
            LstInstruments2_DblClick();
        else
            CmdOk_Click();
        break;
    case Qt::Key_Escape:
        CmdCancel_Click();
        break;
    default:
        SkinnedWindow::keyPressEvent(event);
    }
}

} // namespace velmora
