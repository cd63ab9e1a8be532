// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/frmsetup.h"

#include "base/Settings.h"
#include "composition/Player.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "parts/SetupTab.h"
#include "setup/ChannelsPanel.h"
#include "setup/MidiPanel.h"
#include "setup/PolyphonicsPanel.h"
#include "setup/SetupParts.h"
#include "setup/SoundPanel.h"
#include "setup/StaffPanel.h"
#include "setup/TimingPanel.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/WindowGeometry.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>

#include <utility>

namespace velmora {

namespace {
constexpr QSize kSize(520, 340);
constexpr int kTabsTop = 12; ///< under the title
constexpr QSize kFolded(520, 72);
constexpr int kFirstPanel = 1; ///< "Channels"

/// The blank behind "Sound" is meant.
constexpr std::array<const char*, 6> kTabs{"Polyphonics", "Channels", "Sound ",
                                           "Timing",      "Midi",     "Staff Configuration"};
} // namespace

frmsetup::frmsetup(Desk& desk, QWidget* composing)
    : SkinnedWindow(desk.skins, {}, composing, Qt::Tool)
    , desk_(desk)
    , Lmnu(addTabs())
    , page_(new SetupPage(look(), Ibak5()))
    , polyphonics_(new PolyphonicsPanel(desk_, page_))
    , channels_(new ChannelsPanel(desk_, look(), page_))
    , sound_(new SoundPanel(desk_, look(), page_))
    , timing_(new TimingPanel(desk_, look(), page_))
    , midi_(new MidiPanel(desk_, look(), page_))
    , staff_(new StaffPanel(desk_, page_))
    , watching_(desk.workspace.watchers.join(*this)) {
    setObjectName("frmsetup");
    setWindowTitle("Editor");
    setFixedSize(kSize);
    setAttribute(Qt::WA_QuitOnClose, false);
    page_->setGeometry(kSetupPage);
    for (QAbstractButton* tab : Lmnu) // over the page's line
        tab->raise();
    addKeys();
    addFoldButton();
    attachTips(desk_.tips);
    channels_->TrackSel_Click = [this](int channel) { TrackSel_Click(channel); };
    channels_->TrackHide_Click = [this](int channel, bool hidden) { TrackHide_Click(channel, hidden); };
    channels_->LblInst_DblClick = [this] { LblInst_DblClick(); };
    sound_->lblVolume_Change = [this](std::int16_t value) { lblVolume_Change(value); };
    Lmnu_Click(kFirstPanel);
    openAtStoredPlace();
    showPanels(Change::File);
}

frmsetup::~frmsetup() {
    unload();
}

std::array<QAbstractButton*, frmsetup::kPanels> frmsetup::addTabs() {
    std::array<QAbstractButton*, kPanels> tabs{};
    int x = kSetupPage.left();
    for (int index = 0; index < kPanels; ++index) {
        const auto i = static_cast<std::size_t>(index);
        auto* tab = new SetupTab(look(), kTabs[i], Ibak5());
        tab->setObjectName(QStringLiteral("Lmnu(%1)").arg(index));
        tab->setGeometry(QRect(QPoint(x, kTabsTop), tab->sizeHint()));
        x += tab->width();
        connect(tab, &QAbstractButton::clicked, this, [this, index] { Lmnu_Click(index); });
        desk_.tips.SetToolTip(*tab, {tab->accessibleName(), "Show this page", ""});
        tabs[i] = tab;
    }
    return tabs;
}

void frmsetup::addKeys() {
    const auto bind = [this](const QKeySequence& key, int step) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, step] {
            for (int index = 0; index < kPanels; ++index)
                if (Lmnu[static_cast<std::size_t>(index)]->isChecked()) {
                    Lmnu_Click((index + step + kPanels) % kPanels);
                    return;
                }
        });
    };
    bind(QKeySequence("Ctrl+Tab"), 1);
    bind(QKeySequence("Ctrl+Shift+Tab"), -1);
    bind(QKeySequence("Ctrl+PgDown"), 1);
    bind(QKeySequence("Ctrl+PgUp"), -1);
}

/// At the end of the tabs, and after the panels in the order of Tab.
void frmsetup::addFoldButton() {
    constexpr QSize kFace(22, 22);
    fold_ = new CommandButton(look(), ButtonForm::Icon, Ibak5());
    fold_->setObjectName("fold");
    fold_->setGeometry(QRect({kSetupPage.right() + 1 - kFace.width(), kTabsTop}, kFace));
    connect(fold_, &QAbstractButton::clicked, this, [this] { setFolded(!folded_); });
    showFolded();
}

void frmsetup::showFolded() {
    setFixedSize(folded_ ? kFolded : kSize);
    page_->setVisible(!folded_);
    const QString words = folded_ ? "Unfold" : "Fold";
    fold_->setFace(folded_ ? "unfold" : "chevron");
    fold_->setAccessibleName(words);
    desk_.tips.SetToolTip(*fold_,
                          {words, folded_ ? "Show the page again" : "Leave the title and the tabs alone",
                           folded_ ? "unfold" : "chevron"});
}

void frmsetup::setFolded(bool folded) {
    if (folded == folded_)
        return;
    folded_ = folded;
    showFolded();
    if (folded && pos() == unfoldedTo_) {
        move(unfoldedFrom_);
    } else if (!folded) {
        unfoldedFrom_ = pos();
        move(onScreen(pos(), size(), screen()->availableGeometry()));
        unfoldedTo_ = pos();
    }
}

void frmsetup::saveSettings() {
    const Workspace& workspace = desk_.workspace;
    const auto saveFlag = [this](const settings::Int16& key, bool flag) {
        settings::save(desk_.settings, key, flag ? 1 : 0);
    };
    if (knowsItsPlace()) {
        settings::save(desk_.settings, settings::frmsetup_left, static_cast<float>(x() * kTwips));
        settings::save(desk_.settings, settings::frmsetup_top, static_cast<float>(y() * kTwips));
    }
    settings::save(desk_.settings, settings::frmsetup_folded, folded_);
    settings::save(desk_.settings, settings::Beats_per_measure, workspace.setup.TxtMeter);
    settings::save(desk_.settings, settings::Type_of_note, workspace.setup.NoteX);
    settings::save(desk_.settings, settings::Notes_per_measure, workspace.setup.TxBeats);
    saveFlag(settings::Show_Treble_staff, workspace.setup.ChTreble);
    saveFlag(settings::Show_Bass_staff, workspace.setup.ChBass);
    saveFlag(settings::Show_Sharp_guides, workspace.view.Show_Sharp_guides);
    settings::save(desk_.settings, settings::Line_Height,
                   static_cast<std::int16_t>(workspace.view.Line_Height));
    settings::save(desk_.settings, settings::NumNotes, workspace.score.NumNotes);
}

/// At the stored place, on whichever screen that is; else where the composing window leaves room.
void frmsetup::openAtStoredPlace() {
    const QRect screen = this->screen()->availableGeometry();
    const bool stored = !desk_.settings.GetSetting("Settings", settings::frmsetup_left.key, "").empty();
    if (!stored || !knowsItsPlace()) {
        const QRect around = parentWidget() ? parentWidget()->geometry() : screen;
        const FirstPlace first = firstPlace(around, screen, kSize, kFolded);
        setFolded(parentWidget() && first.folded);
        move(onScreen(first.corner, size(), screen));
        return;
    }
    setFolded(settings::read(desk_.settings, settings::frmsetup_folded));
    const QPoint place(pixelsOfTwips(settings::read(desk_.settings, settings::frmsetup_left)),
                       pixelsOfTwips(settings::read(desk_.settings, settings::frmsetup_top)));
    const QScreen* there = QGuiApplication::screenAt(place + rect().center());
    move(onScreen(place, size(), there ? there->availableGeometry() : screen));
}

void frmsetup::open(Windows::Focus focus) {
    desk_.workspace.setup.SetupOpen = true;
    settings::save(desk_.settings, settings::frmsetup, true);
    showPanels(Change::File);
    setAttribute(Qt::WA_ShowWithoutActivating, focus == Windows::Focus::Leave);
    show();
    raise();
    if (focus == Windows::Focus::Take)
        activateWindow();
}

void frmsetup::unload() {
    if (std::exchange(unloaded_, true))
        return;
    saveSettings();
}

void frmsetup::closeEvent(QCloseEvent* event) {
    event->accept();
    if (unloaded_)
        return;
    desk_.workspace.setup.SetupOpen = false;
    settings::save(desk_.settings, settings::frmsetup, false);
    saveSettings();
}

/// Keys that mean something here, though they are shortcuts of the composing window: F1, and what presses or
/// moves within the control that the keyboard has reached. After a click Space still plays.
bool frmsetup::keeps(const QKeyEvent& event) const {
    if (event.modifiers() & ~Qt::KeypadModifier)
        return false;
    const bool reached = testAttribute(Qt::WA_KeyboardFocusChange);
    const bool isList = qobject_cast<QComboBox*>(focusWidget()) != nullptr;
    switch (event.key()) {
    case Qt::Key_F1:
        return true;
    case Qt::Key_Space:
        return reached && (isList || qobject_cast<QAbstractButton*>(focusWidget()));
    case Qt::Key_Home:
        return reached && isList;
    default:
        return false;
    }
}

bool frmsetup::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && keeps(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return SkinnedWindow::event(event);
}

void frmsetup::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->key() == Qt::Key_F1)
        desk_.windows.help("setup-toolbar");
    else
        SkinnedWindow::keyPressEvent(event);
}

void frmsetup::Lmnu_Click(int index) {
    const std::array<QWidget*, kPanels> panels{polyphonics_, channels_, sound_, timing_, midi_, staff_};
    if (static_cast<std::size_t>(index) >= panels.size())
        return;
    setFolded(false);
    Lmnu[static_cast<std::size_t>(index)]->setChecked(true);
    Lmnu[static_cast<std::size_t>(index)]->setFocus();
    for (QWidget* panel : panels) {
        panel->setGeometry(page_->rect());
        panel->setVisible(panel == panels[static_cast<std::size_t>(index)]);
    }
}

/// Each panel shows some respects of the composition. Closed, the toolbar shows everything when it comes up.
void frmsetup::changed(Changes changes) {
    if (isVisible())
        showPanels(changes);
}

void frmsetup::showPanels(Changes changes) {
    using enum Change;
    const auto refresh = [changes](auto& panel, Changes of) {
        if (changes.any(of | File))
            panel.refresh();
    };
    refresh(*polyphonics_, Modes);
    const Changes sound = Channels | Sound | Effects | Marks | kAnyNotes | Change::Manners;
    refresh(*channels_, sound | Instruments);
    refresh(*sound_, sound);
    refresh(*timing_, Meter);
    refresh(*midi_, Length | Device);
    refresh(*staff_, Looks);
}

void frmsetup::TrackSel_Click(int channel) {
    velmora::TrackSel_Click(desk_.workspace, desk_.settings, channel);
    channels_->refresh(); // a button that could not be chosen is not lit
}

void frmsetup::TrackHide_Click(int channel, bool hidden) {
    const auto& muted = desk_.workspace.score.ChannelMuted;
    if (muted.contains(channel) && muted[channel] != hidden) {
        desk_.workspace.toggleMuted(channel);
        desk_.player.silenceMuted(channel);
    }
}

void frmsetup::LblInst_DblClick() {
    previewInstrument();
    desk_.windows.pickInstrument(*this, [this](PickedInstrument picked) {
        const bool melody = desk_.workspace.score.ActiveChannel < kFirstPercussion;
        instrumentPicked(melody ? picked.melody : picked.percussion);
    });
}

/// New notes of the active channel are to have it, if it is of the channel's group.
void frmsetup::instrumentPicked(bool forActiveChannel) {
    if (!forActiveChannel)
        return;
    applyInstrument(desk_.workspace, desk_.settings);
    previewInstrument();
}

void frmsetup::previewInstrument() {
    const int channel = desk_.workspace.score.ActiveChannel;
    const InstrumentSelection& chosen = desk_.workspace.instruments;
    if (channel < kMelodyChannels && chosen.MelodyInstrument < kFirstPercussionCode &&
        !chosen.MelodyInstrumentName.empty())
        desk_.port.send(shortmessage::programChange(channel, chosen.MelodyInstrument));
}

void frmsetup::lblVolume_Change(std::int16_t value) {
    Workspace& workspace = desk_.workspace;
    const Edit edit(workspace);
    setVelocity(workspace, value);
    if (channels_->isPressed(workspace.score.ActiveChannel))
        fillVolume(workspace, value);
}

} // namespace velmora
