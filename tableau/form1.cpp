// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/form1.h"

#include "base/DemoMedia.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Player.h"
#include "composition/RecoveryFile.h"
#include "composition/ScoreFiles.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "keyboard/StepEntry.h"
#include "parts/Desk.h"
#include "parts/Windows.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/LookMenus.h"
#include "shell/MenuStrip.h"
#include "shell/SkinPainter.h"
#include "shell/WindowGeometry.h"
#include "shell/frminfo.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"
#include "tableau/ButtonBar.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
#include "tableau/FormScreen.h"
#include "tableau/Picmain.h"
#include "tableau/PolynoteDrag.h"
#include "tableau/ScoreExports.h"
#include "tableau/TableauInput.h"
#include "tableau/TextLine.h"
#include "tableau/ToolPanel.h"
#include "tableau/TopBarOverlay.h"
#include "tableau/ViewGeometry.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

#include <filesystem>

namespace velmora {

namespace {
constexpr int kResetAllControllers = 121; ///< of MIDI 1.0

constexpr std::array kLabels{
    MenuStrip::Label{3, "File", "mnupopup6"},
    MenuStrip::Label{2, "Edit", "mnupopup7"},
    MenuStrip::Label{1, "Tools", "mnupopup9"},
    MenuStrip::Label{0, "Help", "mnupopup10"},
};
} // namespace

form1::form1(Desk& desk)
    : SkinnedWindow(desk.skins, {.maximize = true, .minimize = true, .help = true})
    , desk_(desk)
    , Cmd2_("Cmd2", kCmd2, look(), desk.tips, Ibak5())
    , Lb1_("Lb1", kLb1, look(), desk.tips, Ibak5())
    , toolbMenu_(new MenuStrip(desk.menu, kLabels, Ibak5()))
    , topBar_(new QLabel(Ibak5()))
    , buttonBar_(new ButtonBar(look(), Cmd2_, Lb1_, desk.tips, Ibak5()))
    , toolPanel_(new ToolPanel(look(), Lb1_, desk.tips, desk.workspace, Ibak5()))
    , channelStrip_(new ChannelStrip(look(), desk.tips, Ibak5()))
    , TopBarOverlay_(new TopBarOverlay(look(), desk.tips, Ibak5()))
    , Picmain_(new Picmain(look(), desk.tips, desk.workspace, Ibak5()))
    , textLine_(new TextLine(look(), Lb1_, Ibak5()))
    , frminfo_(std::make_unique<frminfo>(desk.tips, this))
    , files_(std::make_unique<ScoreFiles>(desk.workspace, desk.dialogs, desk.settings, desk.folders.songs()))
    , exports_(std::make_unique<ScoreExports>(desk, *this))
    , screen_(std::make_unique<FormScreen>(FormStrips{.window = *this,
                                                      .Cmd2 = Cmd2_,
                                                      .effects = toolPanel_->effects(),
                                                      .channels = *channelStrip_,
                                                      .readOuts = *TopBarOverlay_,
                                                      .picmain = *Picmain_,
                                                      .textLine = *textLine_,
                                                      .tips = *frminfo_,
                                                      .menu = desk.menu},
                                           desk.workspace))
    , plays_(desk.player.show(*screen_))
    , input_(std::make_unique<TableauInput>(desk.workspace, desk.player.notes(), desk.port, *screen_))
    , polynotes_(std::make_unique<PolynoteDrag>())
    , watching_(desk.workspace.watchers.join(*this)) {
    setObjectName("form1");
    setMinimumSize(kLeastForm);
    topBar_->setObjectName("PrintTopBar");
    topBar_->setForegroundRole(QPalette::PlaceholderText);
    topBar_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Ibak5()->setMouseTracking(true);
    attachTips(desk_.tips);
    desk_.tips.SetToolTip(*toolbMenu_, {"Menus", "Right click for menu", ""});
    moveBy(*toolbMenu_->parentWidget());

    bindCommands();
    bindLooks(*this, desk_.menu, skins(), desk_.settings);
    bindRightClick();
    bindTableau();
    bindStepEntry();
    bindEditing();
    bindEffects();
    bindBars();
    bindFiles();
    setHelp([this] { imgTitleHelp_Click(); });

    parts_.percussion = settings::read(desk_.settings, settings::Percussion);
    parts_.editingToolbar = settings::read(desk_.settings, settings::Editing_Toolbar, true);
    openAtStoredPlace();
    loading_ = false;
    form1::changed(kAnotherScore);
    screen_->setPointer(Box::MusicBox, Pointer::Arrow);
    setOrder();
    // Otherwise the first button, which empties the score, would have the focus, and Space would press it.
    Picmain_->setFocus();
}

form1::~form1() = default;

/// Tab leaves the Tableau for the text line, which stands under it.
void form1::setOrder() {
    QWidget* before = Picmain_;
    for (QWidget* part : textLine_->parts()) {
        setTabOrder(before, part);
        before = part;
    }
}

/// On the screen of the stored place, judged by the least size: the width that was saved is not read back.
/// The sizes in the settings are twips, of which fifteen make a pixel.
void form1::openAtStoredPlace() {
    const auto twips = [](int length) { return static_cast<float>(length * kTwips); };
    const auto stored = [this](const settings::Float& key) { return settings::read(desk_.settings, key); };
    const QPoint corner(pixelsOfTwips(stored(settings::form1_left)),
                        pixelsOfTwips(stored(settings::form1_top)));
    const QScreen* there = QGuiApplication::screenAt(QRect(corner, kLeastForm).center());
    const QRect screen = (there ? there : this->screen())->availableGeometry();
    const QSize size(
        pixelsOfTwips(settings::read(desk_.settings, settings::form1_width, twips(screen.width()) - 200)),
        pixelsOfTwips(settings::read(desk_.settings, settings::form1_Height, twips(screen.height()) - 400)));
    const QRect frame(corner, size);
    setGeometry(openingFrame(frame, screen, kLeastForm));
    SettingsBatch place(desk_.settings);
    if (knowsItsPlace()) {
        settings::save(place, settings::form1_left, twips(x()));
        settings::save(place, settings::form1_top, twips(y()));
    }
    settings::save(place, settings::form1_Width, twips(width()));
    settings::save(place, settings::form1_Height, twips(height()));
}

/// Gives each strip its place, and the view what fits.
void form1::place() {
    const FormLayout layout = formLayout(size(), parts_);
    const FormWidth across = formWidth(width());
    const auto place = [](QWidget& widget, const QRect& rect) {
        widget.setGeometry(rect.translated(0, -kTitleHeight));
        widget.setVisible(!rect.isEmpty());
    };
    place(*toolbMenu_, layout.menuStrip);
    const int menus = toolbMenu_->sizeHint().width();
    topBar_->setGeometry(menus + 24, 0, std::max(0, width() - menus - 24 - 16),
                         layout.menuStrip.height() - 1);
    topBar_->raise();
    place(*buttonBar_, layout.buttonBar);
    buttonBar_->layOut(across);
    place(*toolPanel_, layout.toolPanel);
    toolPanel_->layOut(across);
    place(*channelStrip_, layout.channelStrip);
    channelStrip_->layOut(across);
    place(*TopBarOverlay_, layout.readOuts);
    TopBarOverlay_->layOut(across);
    const QRect tableau(0, layout.pic3.top() - 1, width(), layout.textLine.top() - layout.pic3.top() + 1);
    place(*Picmain_, tableau);
    resizeView(desk_.workspace.view, width(), tableau.height(), desk_.workspace.score.NumNotes);
    Picmain_->layOut(layout, tableau.topLeft());
    place(*textLine_, layout.textLine);
    textLine_->layOut();
    PrintTopBar();
}

/// Places and paints everything anew. Of a score that was opened the first notes come into sight, however low
/// or high they lie.
void form1::layOut() {
    if (loading_)
        return;
    place();
    ViewState& view = desk_.workspace.view;
    const int height = Picmain_->surface(Picmain::Surface::MusicBox)->height();
    if (kept_) {
        view.ViewTopRow = topRowKeeping(view, kept_->row, kept_->y, height);
        view.ViewFirstColumn = kept_->firstColumn;
        view.ViewLastColumn = kept_->lastColumn;
    }
    if (std::exchange(opened_, false)) {
        view.ViewTopRow = topRowForNotes(view, desk_.workspace.score, height);
    }
    Picmain_->followView();
    Picmain_->drawAll();
}

void form1::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    layOut();
}

/// Of the Tableau the paper on which the keys work: a ring about all of it would be two lines across the
/// window.
QWidget* form1::ringed(QWidget* focused) const {
    return focused == Picmain_ ? Picmain_->surface(Picmain::Surface::MusicBox)
                               : SkinnedWindow::ringed(focused);
}

/// A crash costs nobody the window's place.
void form1::moveEnded() {
    if (knowsItsPlace() && y() > 0)
        settings::save(desk_.settings, settings::form1_top, static_cast<float>(y() * kTwips));
}

void form1::changeEvent(QEvent* event) {
    SkinnedWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !loading_ && !closing_)
        Form_Activate();
}

void form1::Form_Activate() {
    if (knowsItsPlace())
        settings::save(desk_.settings, settings::form1_left, static_cast<float>(x() * kTwips));
    moveEnded();
    if (desk_.workspace.play.Playing) // what sounds stays as it is
        return;
    bool fellBack = false;
    if (!std::exchange(activated_, true))
        desk_.devices.openAtActivation();
    else
        fellBack = desk_.devices.reopenIfChanged() == DeviceChooser::Reopened::ByMapper;
    if (fellBack)
        announce(desk_.workspace, Change::Device);
    for (int channel = 0; channel < 16; ++channel)
        desk_.port.send(shortmessage::controller(channel, kResetAllControllers, 0));
}

void form1::PrintTopBar() {
    const QString text = toQString(topBarText(desk_.workspace.score, desk_.workspace.setup));
    topBar_->setText(topBar_->fontMetrics().elidedText(text, Qt::ElideRight, topBar_->width()));
}

void form1::changed(Changes changes) {
    if (closing_)
        return;
    using enum Change;
    struct Row {
        Changes when;
        void (form1::*show)();
    };
    static constexpr auto kRows = std::to_array<Row>({
        {File, &form1::showUsedPercussion},
        {Undo | Name | Change::Manners, &form1::showTitle},
        {kAnyNotes | Channels | Length | Change::Manners, &form1::showChannels},
        {Instruments, &form1::showNextNote},
        {Meter, &form1::PrintTopBar},
        {Modes | Looks, &form1::showModes},
        {Tools | Channels | Change::Manners, &form1::showTools},
        {Undo, &form1::showUndo},
    });
    screen_->dropMention();
    for (const Row& row : kRows)
        if (changes.any(row.when))
            (this->*row.show)();
    paint(changes);
}

/// Each Tableau once.
void form1::paint(Changes changes) {
    using enum Change;
    if (changes.any(Length | Looks))
        return layOut();
    if (changes.any(Cells | Channels) && !polynotes_->goesOn())
        Picmain_->drawPolynoteBar();
    if (changes.any(Manners))
        Picmain_->drawGuide();
    if (changes.any(Cells | Channels | Meter | Marks | Manners)) // `Beatbox` shows no marks
        Picmain_->DrawNoteArray();
    if (changes.any(Beats | Channels | Meter))
        Picmain_->DrawBeatArray();
}

/// Notes that nobody sees would be a riddle.
void form1::showUsedPercussion() {
    const std::vector<int> used = desk_.workspace.score.usedChannels();
    if (!parts_.percussion && !used.empty() && used.back() >= kFirstPercussion)
        showPercussion(true);
}

void form1::showChannels() {
    screen_->showChannels();
}

void form1::showNextNote() {
    screen_->showNextNote();
}

int form1::paintings(Box box) const {
    return Picmain_->paintings(box);
}

void form1::showTools() {
    toolPanel_->refresh();
}

void form1::TrackSel_Click(int channel) {
    chooseChannel(desk_.workspace, channel);
}

void form1::Lmnu_Click(int index) {
    toolbMenu_->Lmnu_Click(index);
}

void form1::imgTitleHelp_Click() {
    desk_.windows.help("composing-window");
}

void form1::exportScore(ExportFormat format) {
    exports_->start(format);
}

void form1::ClearAll() {
    PlayAndStop_Click(true);
    if (mayReplace())
        desk_.workspace.clear();
}

void form1::OpenforUndo() {
    input_->cancel();
    const Edit edit(desk_.workspace);
    bringIntoView(desk_.workspace.undoLast());
}

void form1::redo() {
    input_->cancel();
    const Edit edit(desk_.workspace);
    bringIntoView(desk_.workspace.redoLast());
}

/// Who undoes something wants to see what it was; while the score plays the view is the player's.
void form1::bringIntoView(const Workspace::Undone& undone) {
    Workspace& workspace = desk_.workspace;
    const int height = Picmain_->surface(Picmain::Surface::MusicBox)->height();
    const UndoHistory::Changed& changed = undone.changed;
    if (!undone || workspace.play.Playing || changed.positions.first >= changed.positions.end ||
        !showNotes(workspace.view, changed, workspace.score.NumNotes, height))
        return;
    announce(workspace, Change::Looks);
}

void form1::bindStepEntry() {
    Workspace& workspace = desk_.workspace;
    stepEntry_ = std::make_unique<StepEntry>(desk_.inputs, workspace, desk_.port);
    stepEntry_->length = settings::read(desk_.settings, settings::Step_length);
    stepEntry_->onWritten = [this, &workspace](int channel, int row, int position) {
        UndoHistory::Changed note;
        note.positions = {position, position + stepEntry_->stepLength()};
        note.channel = channel;
        note.row = row;
        const int height = Picmain_->surface(Picmain::Surface::MusicBox)->height();
        if (showNotes(workspace.view, note, workspace.score.NumNotes, height))
            announce(workspace, Change::Looks);
    };
    stepEntry_->setOn(settings::read(desk_.settings, settings::Step_entry));
}

void form1::PlayAndStop_Click(bool stop) {
    input_->cancel(); // a note that is being drawn ends here
    desk_.player.PlayAndStop_Click(stop);
}

void form1::PlaySelection_Click() {
    input_->cancel();
    desk_.player.playSegment();
}

void form1::Command32_Click() {
    desk_.player.silence();
}

void form1::closeEvent(QCloseEvent* event) {
    if (closing_)
        return;
    PlayAndStop_Click(true);
    if (!exports_->mayLeave() || !desk_.windows.mayQuit() || !mayClose()) {
        event->ignore();
        return;
    }
    closing_ = true;
    unload();
    event->accept();
}

void form1::saveAtEnd(const QRect& frame) {
    SettingsBatch last(desk_.settings);
    const auto save = [&last](const settings::Float& key, int pixels) {
        settings::save(last, key, static_cast<float>(pixels * kTwips));
    };
    if (knowsItsPlace()) {
        save(settings::form1_left, frame.x());
        save(settings::form1_top, frame.y());
    }
    save(settings::form1_Width, frame.width());
    save(settings::form1_Height, frame.height());
    settings::save(last, settings::Percussion, parts_.percussion);
    settings::save(last, settings::Notationstyle, settings::read(last, settings::Notationstyle));
}

void form1::unload() {
    exports_->stop();
    frminfo_->hide();
    desk_.workspace.play.Playing = false;
    desk_.workspace.score.ClearNoteArrays();
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    saveAtEnd(frame);
    if (const auto packed = demosFolder())
        removeDemoMedia(desk_.folders, *packed);
    std::error_code ignored;
    std::filesystem::remove(desk_.folders.undoFile(), ignored);
    desk_.devices.close();
    desk_.windows.quit();
}

} // namespace velmora
