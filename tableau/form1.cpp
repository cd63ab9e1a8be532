// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/form1.h"

#include "base/DemoMedia.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/NoteReadout.h"
#include "composition/RecoveryFile.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/LookMenus.h"
#include "shell/MenuStrip.h"
#include "shell/MessageBox.h"
#include "shell/SkinPainter.h"
#include "shell/WindowGeometry.h"
#include "shell/frminfo.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"
#include "tableau/ButtonBar.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
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

form1::form1(Application& application)
    : SkinnedWindow(application.skins, {.maximize = true, .minimize = true, .help = true})
    , app_(application)
    , Cmd2_("Cmd2", kCmd2, look(), application.tips, Ibak5())
    , Lb1_("Lb1", kLb1, look(), application.tips, Ibak5())
    , toolbMenu_(new MenuStrip(application.menu, kLabels, Ibak5()))
    , topBar_(new QLabel(Ibak5()))
    , buttonBar_(new ButtonBar(look(), Cmd2_, Lb1_, application.tips, Ibak5()))
    , toolPanel_(new ToolPanel(look(), Lb1_, application.tips, application.workspace, Ibak5()))
    , channelStrip_(new ChannelStrip(look(), application.tips, Ibak5()))
    , TopBarOverlay_(new TopBarOverlay(look(), application.tips, Ibak5()))
    , Picmain_(new Picmain(look(), application.tips, application.workspace, Ibak5()))
    , textLine_(new TextLine(look(), Lb1_, Ibak5()))
    , frminfo_(std::make_unique<frminfo>(application.tips, this))
    , files_(application.workspace, application.dialogs, application.settings, application.folders.songs())
    , screen_(*Picmain_, *textLine_, *TopBarOverlay_)
    , player_(application.workspace, application.port, application.loop)
    , shown_(player_.show(screen_))
    , input_(application.workspace, player_.notes(), application.port, screen_) {
    setObjectName("form1");
    setMinimumSize(kLeastForm);
    topBar_->setObjectName("PrintTopBar");
    topBar_->setForegroundRole(QPalette::PlaceholderText);
    topBar_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Ibak5()->setMouseTracking(true);
    attachTips(app_.tips);
    app_.tips.SetToolTip(*toolbMenu_, {"Menus", "Right click for menu", ""});
    moveBy(*toolbMenu_->parentWidget());

    bindCommands();
    bindLooks(*this, app_.menu, skins(), app_.settings);
    bindRightClick();
    bindTableau();
    bindEditing();
    bindEffects();
    bindBars();
    setHelp([this] { imgTitleHelp_Click(); });

    parts_.percussion = settings::read(app_.settings, settings::Percussion);
    parts_.editingToolbar = settings::read(app_.settings, settings::Editing_Toolbar, true);
    openAtStoredPlace();
    loading_ = false;
    layOut();
    showAll();
    screen_.setPointer(Box::MusicBox, Pointer::Arrow);
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
    const auto stored = [this](const settings::Float& key) { return settings::read(app_.settings, key); };
    const QPoint corner(pixelsOfTwips(stored(settings::form1_left)),
                        pixelsOfTwips(stored(settings::form1_top)));
    const QScreen* there = QGuiApplication::screenAt(QRect(corner, kLeastForm).center());
    const QRect screen = (there ? there : this->screen())->availableGeometry();
    const QSize size(
        pixelsOfTwips(settings::read(app_.settings, settings::form1_width, twips(screen.width()) - 200)),
        pixelsOfTwips(settings::read(app_.settings, settings::form1_Height, twips(screen.height()) - 400)));
    const QRect frame(corner, size);
    setGeometry(openingFrame(frame, screen, kLeastForm));
    SettingsBatch place(app_.settings);
    settings::save(place, settings::form1_left, twips(x()));
    settings::save(place, settings::form1_top, twips(y()));
    settings::save(place, settings::form1_Width, twips(width()));
    settings::save(place, settings::form1_Height, twips(height()));
}

void form1::layOut() {
    if (loading_)
        return;
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
    resizeView(app_.workspace.view, width(), tableau.height(), app_.workspace.score.NumNotes);
    Picmain_->layOut(layout, tableau.topLeft());
    place(*textLine_, layout.textLine);
    textLine_->layOut();
    PrintTopBar();
}

void form1::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    layOut();
}

/// A crash costs nobody the window's place.
void form1::moveEnded() {
    if (y() > 0)
        settings::save(app_.settings, settings::form1_top, static_cast<float>(y() * kTwips));
}

void form1::changeEvent(QEvent* event) {
    SkinnedWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !loading_ && !closing_)
        Form_Activate();
}

void form1::Form_Activate() {
    settings::save(app_.settings, settings::form1_left, static_cast<float>(x() * kTwips));
    moveEnded();
    if (app_.workspace.play.Playing) // what sounds stays as it is
        return;
    bool fellBack = false;
    if (!std::exchange(activated_, true))
        app_.devices.openAtActivation();
    else
        fellBack = app_.devices.reopenIfChanged() == DeviceChooser::Reopened::ByMapper;
    if (fellBack && app_.setup.showMapper)
        app_.setup.showMapper();
    for (int channel = 0; channel < 16; ++channel)
        app_.port.send(shortmessage::controller(channel, kResetAllControllers, 0));
}

void form1::PrintTopBar() {
    const QString text = toQString(topBarText(app_.workspace.score, app_.workspace.setup));
    topBar_->setText(topBar_->fontMetrics().elidedText(text, Qt::ElideRight, topBar_->width()));
}

/// Everything that is shown of the score: it may be another one.
void form1::showAll() {
    const Score& score = app_.workspace.score;
    const std::string name = std::filesystem::path(score.currentFile).filename().string();
    setWindowTitle(name.empty() ? QStringLiteral("Velmora") : QStringLiteral("Velmora - ") + toQString(name));
    showChannels();
    Picmain_->followView();
    Picmain_->drawAll();
    showNextNote();
    PrintTopBar();
    showModes();
    showUndo();
    toolPanel_->refresh();
    if (app_.setup.refresh)
        app_.setup.refresh();
}

/// A score that has taken the place of another is shown from its beginning, percussion included.
void form1::showScore() {
    Workspace& workspace = app_.workspace;
    workspace.view.ViewFirstColumn = 0;
    workspace.view.ViewLastColumn = std::min(workspace.view.ViewColumns, workspace.score.NumNotes - 10);
    workspace.view.SelectStart = workspace.view.SelectEnd = -1;
    workspace.view.PlayMark = 0;
    const std::vector<int> used = workspace.score.usedChannels();
    if (!parts_.percussion && !used.empty() && used.back() >= kFirstPercussion)
        showPercussion(true);
    layOut(); // its length may be another one
    showAll();
}

/// One that was opened has its first notes in sight, however low or high they lie.
void form1::showOpenedScore() {
    showScore();
    Workspace& workspace = app_.workspace;
    const int height = Picmain_->surface(Picmain::Surface::MusicBox)->height();
    const int top = topRowForNotes(workspace.view, workspace.score, height);
    if (std::exchange(workspace.view.ViewTopRow, top) == top)
        return;
    Picmain_->followView();
    Picmain_->drawAll();
}

void form1::showChannels() {
    const Score& score = app_.workspace.score;
    channelStrip_->show(score);
    TopBarOverlay_->showTrack(score.ActiveChannel);
    TopBarOverlay_->setField(TopBarOverlay::LblNumnotes, toQString(noteCountText(score.SongEnd)));
    showHint();
}

/// Before a note is looked at the read-outs say what will sound.
void form1::showNextNote() {
    const Score& score = app_.workspace.score;
    const auto code = score.ChannelInstrument[static_cast<std::size_t>(score.ActiveChannel)];
    NoteReadout note;
    note.number = std::to_string(app_.workspace.view.ViewFirstColumn + 1);
    note.name = " -";
    note.chord = "-";
    note.vol = std::to_string(kClearedVolume);
    note.inst = nameOfCode(code);
    screen_.showNote(note, FormScreen::kNoColumn);
}

void form1::showSongEnd() {
    showChannels();
    Picmain_->setScrollMaximum(columnRange(app_.workspace.view, app_.workspace.score.SongEnd).maximum);
}

void form1::showLength() {
    layOut();
    showChannels();
}

void form1::showHint() {
    const Workspace& workspace = app_.workspace;
    Picmain_->showHint(workspace.score.SongEnd == 0 && workspace.score.usedChannels().empty());
}

void form1::TrackSel_Click(int channel) {
    app_.workspace.selectChannel(channel);
    input_.rememberChannel();
    showChannels();
    if (app_.setup.channelChanged)
        app_.setup.channelChanged();
    showNextNote();
    Picmain_->drawPolynoteBar();
    Picmain_->DrawNoteArray();
    Picmain_->DrawBeatArray();
}

void form1::Lmnu_Click(int index) {
    toolbMenu_->Lmnu_Click(index);
}

void form1::imgTitleHelp_Click() {
    if (app_.openHelp)
        app_.openHelp("composing-window");
}

void form1::showOpened(const ScoreFiles::Outcome& outcome) {
    if (outcome.opened)
        showOpenedScore();
    showOutcome(outcome);
}

void form1::showOutcome(const ScoreFiles::Outcome& outcome) {
    showAll();
    if (!outcome.words.empty())
        tell(skins(), this, toQString(outcome.words));
}

void form1::Command33_Click() {
    PlayAndStop_Click(true);
    showOpened(files_.open());
}

void form1::openScore(const std::filesystem::path& file) {
    PlayAndStop_Click(true);
    showOpened(files_.open(file));
}

void form1::bringBack(const LeftScore& left) {
    PlayAndStop_Click(true);
    restore(left, app_.workspace);
    layOut(); // it may have made the score longer
    showOpenedScore();
}

bool form1::mSaveAs_Click() {
    if (!app_.workspace.holdsNotes())
        screen_.setToolText({}, "There are no notes yet that could be saved");
    const ScoreFiles::Outcome outcome = files_.saveAs();
    showOutcome(outcome);
    return outcome.done;
}

void form1::ClearAll() {
    PlayAndStop_Click(true);
    app_.workspace.clear();
    showScore();
}

void form1::OpenforUndo() {
    input_.cancel();
    if (app_.workspace.undoLast())
        showScore();
}

void form1::PlayAndStop_Click(bool stop) {
    input_.cancel(); // a note that is being drawn ends here
    player_.PlayAndStop_Click(stop);
}

void form1::PlaySelection_Click() {
    input_.cancel();
    player_.playSegment();
}

void form1::Command32_Click() {
    player_.silence();
}

/// Whether the user lets the window go. Who wants to save and then doesn't keeps the window, and the score.
bool form1::mayClose() {
    if (!app_.workspace.holdsNotes())
        return true;
    switch (askYesNo(skins(), this, "Do you want to save your composition?")) {
    case Answer::Yes:
        return mSaveAs_Click();
    case Answer::No:
        return true;
    case Answer::None:
        break;
    }
    return false;
}

void form1::closeEvent(QCloseEvent* event) {
    if (closing_)
        return;
    PlayAndStop_Click(true);
    if (!mayClose()) {
        event->ignore();
        return;
    }
    closing_ = true;
    unload();
    event->accept();
}

void form1::saveAtEnd(const QRect& frame) {
    SettingsBatch last(app_.settings);
    const auto save = [&last](const settings::Float& key, int pixels) {
        settings::save(last, key, static_cast<float>(pixels * kTwips));
    };
    save(settings::form1_left, frame.x());
    save(settings::form1_top, frame.y());
    save(settings::form1_Width, frame.width());
    save(settings::form1_Height, frame.height());
    settings::save(last, settings::Percussion, parts_.percussion);
    settings::save(last, settings::Notationstyle, settings::read(last, settings::Notationstyle));
}

void form1::unload() {
    frminfo_->hide();
    app_.workspace.play.Playing = false;
    app_.workspace.score.ClearNoteArrays();
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    saveAtEnd(frame);
    if (const auto packed = demosFolder())
        removeDemoMedia(app_.folders, *packed);
    std::error_code ignored;
    std::filesystem::remove(app_.folders.undoFile(), ignored);
    app_.devices.close();
    if (app_.quit)
        app_.quit();
}

} // namespace velmora
