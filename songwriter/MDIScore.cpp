// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/MDIScore.h"

#include "base/DialogNames.h"
#include "base/Dialogs.h"
#include "base/MessageLoop.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Text.h"
#include "composition/Player.h"
#include "composition/Workspace.h"
#include "notation/PageFiles.h"
#include "parts/BringUp.h"
#include "parts/Desk.h"
#include "parts/SetupTab.h"
#include "shell/ExToolTip.h"
#include "shell/MessageBox.h"
#include "shell/ProgressWindow.h"
#include "shell/WindowGeometry.h"
#include "songwriter/Commands.h"
#include "songwriter/NotesPanel.h"
#include "songwriter/PageArea.h"
#include "songwriter/PageView.h"
#include "songwriter/ScorePanel.h"
#include "songwriter/ScoreSheet.h"
#include "songwriter/StavesPanel.h"
#include "songwriter/TextsPanel.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr const char* kTitle = "Velmora SongWriter 1.1   BETA";
constexpr const char* kDocumentFilter = "Score Files, Lyrics(*.sng;*.lyr) |*.sng;*.lyr|";
constexpr const char* kLyricsFilter = "Lyrics (*.lyr) |*.lyr|";
constexpr const char* kSaveFilter = "Velmora Text/Lyrics(*.lyr)|*.lyr";
constexpr double kQuiet = 1;      ///< seconds of writing before its progress is shown
constexpr double kBarsAPage = 20; ///< about; only progress is reckoned by it
} // namespace

MDIScore::MDIScore(Desk& desk)
    : SkinnedWindow(desk.skins, {.maximize = true, .minimize = true, .help = true})
    , desk_(desk)
    , song_(desk.song)
    , parts_{desk, look(), desk.song}
    , Lb1_("Lb1", kSongButtons, look(), desk.tips, Ibak5())
    , watching_(desk.workspace.watchers.join(*this)) {
    setObjectName("MDIScore");
    setWindowTitle(kTitle);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAcceptDrops(true);
    loadSettings();
    addBar();
    addTabs();
    bindPages();
    bindCommands();
    bindKeys();
    attachTips(desk_.tips);
    setHelp([this] { desk_.windows.help("songwriter"); });
    openAtStoredPlace();
    showPanel(score_);
    refresh();
    area_->showPages();
}

MDIScore::~MDIScore() {
    song_.onPages = nullptr;
}

/// What the pages and the panels press.
void MDIScore::bindPages() {
    song_.onPages = [this] { area_->showPages(); };
    area_->onFront = [this] { showFront(); };
    area_->setTextStyle(texts_->style());
    texts_->onStyle = [this] { area_->setTextStyle(texts_->style()); };
    texts_->onLineText = [this] { addText(); };
    texts_->onTitle = [this] { showTitle(); };
    notes_->onClassic = [this] { refresh(); };
    score_->onKey = [this] { showKey(); };
}

void MDIScore::changed(Changes changes) {
    if (changes.any(Change::File)) {
        opened_ = true;
        song_.setup.start = 0;
        song_.setup.end = -1;
    }
    if (changes.any(Change::Manners)) {
        song_.setup.classicPage = desk_.workspace.manners == Manners::classic();
        notes_->refresh();
        texts_->refresh();
    }
    if (changes.any(kAnyNotes | Change::File | Change::Length | Change::Meter))
        score_->refresh();
    if (changes.any(Changes(Change::File) | Change::Name))
        showTitle();
}

void MDIScore::refresh() {
    staves_->refresh();
    notes_->refresh();
    score_->refresh();
    texts_->refresh();
    showKey();
    showTitle();
}

void MDIScore::say(const std::string& words) {
    if (!words.empty())
        tell(skins(), this, toQString(words));
}

// Pages.

void MDIScore::AddPage() {
    if (writes_)
        return;
    if (const std::string problem = notation::paintingProblem(); !problem.empty())
        say(problem);
    area_->raisePage(song_.AddPage());
}

void MDIScore::WriteFromNotes() {
    write(&notation::SongDocument::WriteFromNotes);
}

void MDIScore::RewriteFromNotes() {
    write(&notation::SongDocument::RewriteFromNotes);
}

void MDIScore::write(
    notation::SongDocument::Outcome (notation::SongDocument::*command)(const notation::SongDocument::GoOn&)) {
    if (std::exchange(writes_, true))
        return;
    cancelled_ = false;
    const double since = desk_.loop.now();
    const int front = area_->front();
    const ScoreSheet* const sheet = area_->frontSheet();
    song_.frameWidth = width() * kTwips; // for the default file
    song_.sheetWidth = sheet ? sheet->width() * kTwips : 0;
    const auto outcome = (song_.*command)([this, since](int pages) { return goOn(since, pages); });
    writes_ = false;
    if (progress_) {
        progress_->onCancel = nullptr;
        progress_->close();
        progress_.clear(); // it goes later, and the next writing has one of its own
    }
    // The page that was read stays before the others.
    if (song_.isOpen(front))
        area_->raisePage(front);
    staves_->refresh();
    score_->refresh();
    if (!outcome.words.empty())
        say(outcome.words);
    else
        say(notation::paintingProblem());
}

bool MDIScore::goOn(double since, int pages) {
    if (desk_.loop.now() - since < kQuiet)
        return true;
    if (!progress_) {
        progress_ = new ProgressWindow(skins(), desk_.tips, this, "Write Score", "Writing the score...");
        progress_->setAttribute(Qt::WA_DeleteOnClose);
        progress_->onCancel = [this] { cancelled_ = true; };
        progress_->open();
    }
    const Score& score = desk_.workspace.score;
    const double bars = static_cast<double>(song_.end()) / std::max<int>(score.NotesPerMeasure, 1);
    progress_->showShare(std::min(pages * kBarsAPage / std::max(bars, 1.0), 0.95));
    desk_.loop.YieldIfInput();
    return !cancelled_;
}

void MDIScore::playLoop() {
    if (loops_ || desk_.workspace.play.Playing) {
        desk_.player.PlayAndStop_Click(true);
        Lb1_.setOn(songButton("loop"), loops_);
        return;
    }
    const bool before = desk_.workspace.play.LoopOn;
    loops_ = true;
    Lb1_.setOn(songButton("loop"), true);
    desk_.player.setLoop(true);
    desk_.player.PlayAndStop_Click(false); // comes back when it has ended
    loops_ = false;
    desk_.player.setLoop(before);
    Lb1_.setOn(songButton("loop"), false);
}

// Texts.

void MDIScore::addText() {
    if (!area_->frontSheet())
        AddPage();
    if (ScoreSheet* const sheet = area_->frontSheet())
        sheet->addTextInTheMiddle();
}

void MDIScore::resetTexts() {
    const int page = area_->front();
    const auto count = song_.sheets().itemsOf(page).size();
    if (page == 0 || count == 0)
        return;
    const QString question = count == 1 ? QStringLiteral("Take the text off this page?")
                                        : QStringLiteral("Take the %1 texts off this page?").arg(count);
    if (askYesNo(skins(), this, question) == Answer::Yes)
        song_.setTexts(page, {});
}

// Files.

void MDIScore::OpenDocument() {
    const ChosenFile chosen =
        desk_.dialogs.OpenDialog("Open File", kDocumentFilter, desk_.folders.songs().string());
    if (!chosen.path.empty())
        openDocument(tidyFileName(chosen.path));
}

void MDIScore::openDocument(const fs::path& file) {
    if (toLower(file.extension().string()) != ".sng") {
        if (mayLose())
            showOpened(song_.OpenLyrics(file));
        return;
    }
    opened_ = false;
    desk_.windows.openScore(file);
    if (opened_) // the user may have kept the score that was there
        WriteFromNotes();
}

void MDIScore::OpenLyrics() {
    const ChosenFile chosen =
        desk_.dialogs.OpenDialog("Open Lyrics", kLyricsFilter, desk_.folders.songs().string());
    if (!chosen.path.empty() && mayLose())
        showOpened(song_.OpenLyrics(tidyFileName(chosen.path)));
}

void MDIScore::showOpened(const notation::SongDocument::Outcome& opened) {
    refresh();
    say(opened.words);
    if (!opened.done)
        return;
    if (song_.frameWidth > 0 && knowsItsPlace())
        resize(std::clamp(pixelsOfTwips(static_cast<float>(song_.frameWidth)), minimumWidth(),
                          std::max(screen()->availableGeometry().width(), minimumWidth())),
               height());
    ScoreSheet* const sheet = area_->frontSheet();
    if (song_.sheetWidth > 0 && sheet) {
        sheet->resize(std::clamp(pixelsOfTwips(static_cast<float>(song_.sheetWidth)), sheet->minimumWidth(),
                                 std::max(area_->width(), sheet->minimumWidth())),
                      sheet->height());
        sheet->setPlaced(true);
    }
}

bool MDIScore::saveLyricsTo(const fs::path& file) {
    const ScoreSheet* const sheet = area_->frontSheet();
    const auto saved = song_.SaveLyrics(file, width() * kTwips, sheet ? sheet->width() * kTwips : 0);
    say(saved.words);
    return saved.done;
}

bool MDIScore::SaveLyrics() {
    const fs::path proposed = song_.proposedLyrics();
    const ChosenFile chosen = desk_.dialogs.SaveDialog1(
        "Save Text/Lyrics", kSaveFilter,
        proposed.empty() ? desk_.folders.songs().string() : proposed.string(), ".lyr");
    return !chosen.path.empty() && saveLyricsTo(tidyFileName(chosen.path));
}

void MDIScore::save() {
    desk_.windows.saveScore();
    const bool asks = desk_.workspace.manners.asksBeforeLoss;
    if (asks && !song_.hasLyrics())
        return;
    if (asks && !song_.lyricsFile().empty())
        saveLyricsTo(song_.lyricsFile());
    else
        SaveLyrics();
}

/// Whether the words on the pages may be replaced. In classic manners nobody asks.
bool MDIScore::mayLose() {
    if (!desk_.workspace.manners.asksBeforeLoss || !song_.isUnsaved())
        return true;
    switch (askSave(skins(), this, "The title and the texts on the pages are not saved.\nSave them?")) {
    case SaveAnswer::Save:
        return song_.lyricsFile().empty() ? SaveLyrics() : saveLyricsTo(song_.lyricsFile());
    case SaveAnswer::Discard:
        return true;
    default:
        return false;
    }
}

void MDIScore::newScore() {
    if (writes_ || !mayLose())
        return;
    song_.clear();
    refresh();
    AddPage();
}

void MDIScore::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MDIScore::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) {
            event->acceptProposedAction();
            // The other program waits until the drop has been answered.
            QTimer::singleShot(
                0, this, [this, file = fs::path(bytesOfText(url.toLocalFile()))] { openDocument(file); });
            return;
        }
}

// Its coming and going.

void MDIScore::open(Windows::Focus focus) {
    bringUp(*this, focus);
}

bool MDIScore::mayEnd() {
    return mayLose();
}

void MDIScore::unload() {
    cancelled_ = true;
    saveSettings();
}

void MDIScore::closeEvent(QCloseEvent* event) {
    event->accept();
    unload();
}

void MDIScore::appearanceChanged() {
    SkinnedWindow::appearanceChanged();
    if (area_)
        area_->showPages();
}

} // namespace velmora
