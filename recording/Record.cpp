// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/Record.h"

#include "base/DialogNames.h"
#include "base/Dialogs.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "base/Text.h"
#include "composition/Player.h"
#include "composition/Workspace.h"
#include "parts/BringUp.h"
#include "parts/CommandBinding.h"
#include "parts/Desk.h"
#include "recording/AfterPanel.h"
#include "recording/Commands.h"
#include "recording/FormatPanel.h"
#include "recording/LevelBars.h"
#include "recording/MessagePanel.h"
#include "recording/PlayerStrip.h"
#include "recording/RecordSettings.h"
#include "recording/SessionButton.h"
#include "recording/SourcePanel.h"
#include "recording/TakePanel.h"
#include "recording/VolumeControl.h"
#include "shell/Frmmenu.h"
#include "shell/MenuStrip.h"
#include "shell/MessageBox.h"
#include "shell/WindowGeometry.h"
#include "studio/SessionMessages.h"
#include "studio/Studio.h"
#include "studio/modMultimedia.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace velmora {

namespace {
// Places count from the panel's top, under the title.
constexpr QSize kLeast(640, 432);
constexpr int kMargin = 12;
constexpr int kMenuHeight = 24;
constexpr int kStripTop = 32;
constexpr int kUpperTop = 92;
constexpr int kUpperHeight = 128;
constexpr int kLowerTop = 228;
constexpr int kLeftWidth = 300;
constexpr int kGap = 8;
constexpr int kMeterMilliseconds = 50;
constexpr int kUpdateMilliseconds = 100;

constexpr std::array kLabels{
    MenuStrip::Label{1, "File", "mnuRecordpopup1"},
    MenuStrip::Label{2, "Recording", "mnuRecordpopup2"},
    MenuStrip::Label{3, "Help", "mnuRecordpopup3"},
};
} // namespace

Record::Record(Desk& desk, QWidget* composing)
    : SkinnedWindow(desk.skins, {.maximize = true, .minimize = true, .help = true})
    , desk_(desk)
    , studio_(desk.studio)
    , parts_{desk, look()}
    , player_("player", kPlayerButtons, look(), desk.tips, Ibak5())
    , menus_(new MenuStrip(desk.menu, kLabels, Ibak5()))
    , strip_(new PlayerStrip(parts_, player_, studio_.state, Ibak5()))
    , source_(new SourcePanel(parts_, studio_.state, Ibak5()))
    , format_(new FormatPanel(parts_, studio_.state, Ibak5()))
    , after_(new AfterPanel(parts_, studio_.state, Ibak5()))
    , messages_(new MessagePanel(parts_, studio_.state, Ibak5())) {
    setObjectName("Record");
    setWindowTitle("Velmora  Recording Studio");
    setMinimumSize(kLeast);
    setAttribute(Qt::WA_QuitOnClose, false);
    loadChoices(studio_.state, desk_.settings);
    bindCommands();
    attachTips(desk_.tips);
    setAcceptDrops(true);
    for (auto* const field : findChildren<QLineEdit*>())
        field->setAcceptDrops(false); // it would take a file for a text
    for (auto* const field : findChildren<QAbstractScrollArea*>())
        field->viewport()->setAcceptDrops(false);
    setHelp([this] { desk_.windows.help("recording-studio"); });
    resize(kLeast);
    openAtStoredPlace();
    if (composing && desk_.settings.GetSetting("Settings", settings::record_left.key, "").empty())
        move(firstPlace(composing->geometry(), composing->screen()->availableGeometry(), size(), size())
                 .corner);
    // Told from within: what follows may measure another file.
    loudness_.onKnown = [this] {
        QMetaObject::invokeMethod(
            this, [this] { sessionChanged(); }, Qt::QueuedConnection);
    };
    studio_.session.show(this);
    studio_.music.show(this);
    Record::sessionChanged();
    source_->start().setFocus();
}

Record::~Record() {
    studio_.session.show(nullptr);
    studio_.music.show(nullptr);
}

/// Each command with its button, its menu item and its key.
void Record::bindCommands() {
    constexpr CommandBank Record::*kPlayer = &Record::player_;
    static constexpr auto kCommands = std::to_array<CommandBinding<Record>>({
        {{kPlayer, playerButton("open")},
         [](Record& form) { form.studio_.music.open_Click(); },
         "mnuRecordOpen",
         "Ctrl+O"},
        {{kPlayer, playerButton("play")},
         [](Record& form) { form.studio_.music.PlayMP3(); },
         "mnuRecordPlay",
         "Ctrl+P"},
        {{kPlayer, playerButton("pause")},
         [](Record& form) { form.Pause_Click(); },
         "mnuRecordPause",
         "Ctrl+Shift+P"},
        {{kPlayer, playerButton("stop")}, [](Record& form) { form.Stop_Click(); }, "mnuRecordStop", "Ctrl+."},
        {{kPlayer, playerButton("save")},
         [](Record& form) { form.studio_.music.RenameFile(); },
         "mnuRecordSave",
         "Ctrl+S"},
        {{}, [](Record& form) { form.close(); }, "mnuExitRecord", "Ctrl+W"},
        {{}, [](Record& form) { form.imgTitleHelp_Click(); }, "mnuRecordHelp", "F1"},
    });
    velmora::bindCommands<Record>(*this, desk_.menu, kCommands);
    bindButton(source_->start(), "RecordStart", "Ctrl+R",
               [](Record& form) { form.studio_.session.CmdrecordSNG_Click(); });
    bindButton(source_->stop(), "RecordStop", "Ctrl+Shift+R",
               [](Record& form) { form.studio_.session.CmdStopRecording_Click(); });
    bindButton(format_->encode(), "mnuEncode", "Ctrl+E",
               [](Record& form) { form.studio_.session.Command20_Click(); });
    bindButton(after_->volumeControl(), "", nullptr, [](Record& form) { form.Command1_Click(); });
    bindButton(after_->log(), "", "Ctrl+L",
               [](Record& form) { form.desk_.windows.open(Windows::Name::frmLog); });
    bindButton(after_->take(), "", "Ctrl+T", [](Record& form) { form.showTake(true); });
    if (desk_.windows.has(Windows::Name::CDWriter))
        bindButton(after_->burn(), "mnuBurnCD", "Ctrl+B",
                   [](Record& form) { form.desk_.windows.open(Windows::Name::CDWriter); });
    else
        after_->burn().setEnabled(false);
}

void Record::bindButton(QAbstractButton& button, std::string_view item, const char* key,
                        void (*press)(Record&)) {
    const auto routine = [this, &button, press] {
        if (button.isEnabled())
            press(*this);
    };
    connect(&button, &QAbstractButton::clicked, this, routine);
    bindCommand(*this, desk_.menu, {.item = item, .key = key}, routine);
}

void Record::Pause_Click() {
    if (!recordsNotes())
        studio_.music.PauseMP3(); // which goes on where it is paused
    else if (desk_.workspace.play.Playing)
        desk_.player.pause();
    else
        desk_.player.PlayAndStop_Click(false);
}

/// The end of the score ends its recording.
void Record::Stop_Click() {
    if (!recordsNotes())
        studio_.music.StopMP3();
    else if (desk_.workspace.play.Playing)
        desk_.player.PlayAndStop_Click(true);
    else
        studio_.session.CmdStopRecording_Click();
}

void Record::Command1_Click() {
    if (!startVolumeControl())
        tell("Velmora - Error", "Unable to load SndVol32.exe");
}

void Record::showTake(bool shown) {
    if (shown && !take_) {
        take_ = new TakePanel(parts_, loudness_, Ibak5());
        take_->onBack = [this] { showTake(false); };
        take_->onWords = [this](const std::string& words) { say(studio_.state, this, words); };
        take_->setGeometry(after_->geometry() | messages_->geometry());
    }
    if (!take_ || shown == take_->isVisibleTo(this))
        return;
    take_->setVisible(shown);
    after_->setVisible(!shown);
    messages_->setVisible(!shown);
    if (shown)
        take_->setFocus();
    else if (!studio_.state.isRecording)
        after_->take().setFocus();
}

bool Record::recordsNotes() const {
    return studio_.state.isRecording && studio_.state.source == RecordingSource::Notes;
}

// What the session asks and shows.

void Record::sessionChanged() {
    const SessionState& state = studio_.state;
    strip_->refresh(shownFile());
    source_->refresh();
    format_->refresh();
    after_->refresh();
    messages_->refresh();
    if (take_)
        take_->refresh();
    followLoudness();
    showCommands();
    if (state.isRecording == meter_.isActive())
        return;
    if (state.isRecording) {
        showTake(false); // what is said now is to be seen
        updated_.start();
        meter_.start(kMeterMilliseconds, Qt::CoarseTimer, this);
    } else {
        meter_.stop();
        strip_->warn({});
    }
}

/// When a take is whole, and encoded if it is to be, it is told how loud it has become.
void Record::followLoudness() {
    const SessionState& state = studio_.state;
    const std::filesystem::path file = trimmed(state.Text6);
    if (state.isRecording)
        loudness_.forget();
    if (state.isRecording || state.isEncoding)
        isMeasured_ = false;
    else if (!state.isLocked && !std::exchange(isMeasured_, true))
        loudness_.follow(file);
    strip_->showLoudness(state.isRecording ? std::string() : loudness_.words(file));
}

/// What is disabled can be reached by no menu and no key either.
void Record::showCommands() {
    const SessionState& state = studio_.state;
    const bool free = !state.isLocked && !state.isRecording;
    for (const auto& [button, item] :
         {std::pair(playerButton("open"), "mnuRecordOpen"), std::pair(playerButton("play"), "mnuRecordPlay"),
          std::pair(playerButton("save"), "mnuRecordSave")}) {
        player_[button].setEnabled(free);
        desk_.menu.item(item).setEnabled(free);
    }
    desk_.menu.item("RecordStart").setEnabled(free);
    desk_.menu.item("mnuEncode").setEnabled(free || state.isEncoding);
    if (!desk_.windows.has(Windows::Name::CDWriter))
        return;
    after_->burn().setEnabled(free);
    desk_.menu.item("mnuBurnCD").setEnabled(free);
}

/// The score, the music or the file that is recorded or was.
QString Record::shownFile() const {
    const SessionState& state = studio_.state;
    if (recordsNotes() && !desk_.workspace.score.currentFile.empty())
        return fileName(desk_.workspace.score.currentFile);
    if (studio_.music.isOpen())
        return textOfBytes(studio_.music.file().filename().string());
    return fileName(state.Text6);
}

void Record::tell(const std::string& title, const std::string& text) {
    velmora::tell(skins(), this, toQString(text), toQString(title));
}

bool Record::ask(const std::string& question) {
    return askYesNo(skins(), this, toQString(question)) == Answer::Yes;
}

std::filesystem::path Record::askOpen(const std::string& title, const std::string& filter) {
    return desk_.dialogs.OpenDialog(title, filter, desk_.folders.songs().string()).path;
}

std::filesystem::path Record::askSave(const std::string& title, const std::string& filter,
                                      const std::string& proposed) {
    const std::filesystem::path start = desk_.folders.songs() / proposed; // which may have a folder itself
    return desk_.dialogs.SaveDialog(title, filter, start.string()).path;
}

void Record::showKeyboard() {
    desk_.windows.open(Windows::Name::frmsynth);
}

void Record::dragEnterEvent(QDragEnterEvent* event) {
    if (!studio_.session.isBusy() && event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void Record::dropEvent(QDropEvent* event) {
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            files.emplace_back(bytesOfText(url.toLocalFile()));
    if (files.empty() || studio_.session.isBusy())
        return;
    event->acceptProposedAction();
    // The other program waits until the drop has been answered, and playing lasts.
    QTimer::singleShot(0, this, [this, files] { playDropped(files); });
}

void Record::playDropped(const std::vector<std::filesystem::path>& files) {
    activateWindow();
    if (toLower(files.front().extension().string()) == ".sng")
        openScore(files.front());
    else if (studio_.music.openRow(files))
        studio_.music.PlayMP3();
}

void Record::openScore(const std::filesystem::path& file) {
    desk_.windows.openScore(file);
}

void Record::appearanceChanged() {
    SkinnedWindow::appearanceChanged();
    sessionChanged(); // some words have colours of their own
}

// While it records.

void Record::timerEvent(QTimerEvent* event) {
    if (event->timerId() == meter_.timerId())
        followTake();
    else
        SkinnedWindow::timerEvent(event);
}

void Record::followTake() {
    if (updated_.elapsed() >= kUpdateMilliseconds) {
        updated_.start();
        studio_.session.update();
    }
    const Capture* const take = studio_.media.recorder(modMultimedia::kCapture);
    if (!take || !isVisible())
        return;
    source_->levels().showLevels(take->levels());
    const double silent = take->silentSeconds();
    strip_->warn(silent < RecordingSession::kSilenceToldSeconds
                     ? QString()
                     : QStringLiteral("Silent for %1 seconds").arg(static_cast<int>(silent)));
}

// Its coming and going.

void Record::open(Windows::Focus focus) {
    bringUp(*this, focus);
}

/// At the stored place on whichever screen that is.
void Record::openAtStoredPlace() {
    if (!knowsItsPlace())
        return;
    const QPoint corner(pixelsOfTwips(settings::read(desk_.settings, settings::record_left)),
                        pixelsOfTwips(settings::read(desk_.settings, settings::record_top)));
    const QScreen* there = QGuiApplication::screenAt(corner + rect().center());
    move(onScreen(corner, size(), (there ? there : screen())->availableGeometry()));
}

void Record::saveSettings() {
    saveChoices(studio_.state, desk_.settings);
    if (!knowsItsPlace())
        return;
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    SettingsBatch place(desk_.settings);
    settings::save(place, settings::record_left, static_cast<float>(frame.x() * kTwips));
    settings::save(place, settings::record_top, static_cast<float>(frame.y() * kTwips));
}

bool Record::mayEnd() {
    const SessionState& state = studio_.state;
    const bool worksOnTake = take_ && take_->isBusy();
    if (!studio_.session.isBusy() && !studio_.music.isPaused() && !worksOnTake)
        return true;
    const char* const question =
        state.isRecording  ? "A recording goes on. Stop it and close the Recording Studio?"
        : state.isEncoding ? "An MP3 file is being made. Stop that and close the Recording Studio?"
        : worksOnTake      ? "A file is being made. Stop that and close the Recording Studio?"
                           : "Music is playing. Stop it and close the Recording Studio?";
    return ask(question);
}

void Record::endWork() {
    studio_.session.endAll();
    if (take_)
        take_->endWork();
    if (studio_.music.isOpen())
        studio_.music.CloseMP3();
    if (const bool shown = settings::read(desk_.settings, settings::Playing_position);
        desk_.workspace.play.ShowPlayLine != shown) {
        const Edit edit(desk_.workspace, Change::Modes);
        desk_.workspace.play.ShowPlayLine = shown;
    }
}

void Record::unload() {
    endWork();
    saveSettings();
}

void Record::closeEvent(QCloseEvent* event) {
    if (!mayEnd()) {
        event->ignore();
        return;
    }
    event->accept();
    unload();
}

void Record::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    const int edge = look().skin().edgeWidth;
    menus_->setGeometry(edge, 0, width() - 2 * edge, kMenuHeight);
    const int inner = width() - 2 * kMargin;
    strip_->setGeometry(kMargin, kStripTop, inner, PlayerStrip::kHeight);
    const int right = kMargin + kLeftWidth + kGap;
    const int rightWidth = width() - kMargin - right;
    const int lower = height() - kTitleHeight - kMargin - kLowerTop;
    source_->setGeometry(kMargin, kUpperTop, kLeftWidth, kUpperHeight);
    format_->setGeometry(right, kUpperTop, rightWidth, kUpperHeight);
    after_->setGeometry(kMargin, kLowerTop, kLeftWidth, lower);
    messages_->setGeometry(right, kLowerTop, rightWidth, lower);
    if (take_)
        take_->setGeometry(after_->geometry() | messages_->geometry());
}

} // namespace velmora
