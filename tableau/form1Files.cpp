// SPDX-License-Identifier: GPL-2.0-or-later
// How a score comes into the composing window and leaves it, and what is asked and said about that.
#include "base/DemoMedia.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "composition/Player.h"
#include "composition/RecoveryFile.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "shell/Frmmenu.h"
#include "shell/MessageBox.h"
#include "tableau/FormScreen.h"
#include "tableau/form1.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTimer>

#include <optional>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr int kFolderWidth = 260; ///< of a folder in a menu; a longer one is shortened in the middle

/// The score that is dragged: one file of this machine, with the ending of scores.
std::optional<fs::path> draggedScore(const QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    if (urls.size() != 1 || !urls.front().isLocalFile() || !event.possibleActions().testFlag(Qt::CopyAction))
        return std::nullopt;
    const QString file = urls.front().toLocalFile();
    if (!file.endsWith(QLatin1String(".sng"), Qt::CaseInsensitive))
        return std::nullopt;
    return fs::path(QFile::encodeName(file).toStdString());
}

/// Whoever drags keeps the file. A question that is open is answered first.
void answerDrag(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(draggedScore(event).has_value() && !QApplication::activeModalWidget());
}

/// The name with its folder at the right.
QString captionOf(const fs::path& file, const QFont& font) {
    QString folder = toQString(file.parent_path().string());
    if (const QString home = QDir::homePath(); folder == home || folder.startsWith(home + u'/'))
        folder = u'~' + folder.mid(home.size());
    return toQString(file.filename().string()) + u'\t' +
           QFontMetrics(font).elidedText(folder, Qt::ElideMiddle, kFolderWidth);
}
} // namespace

void form1::bindFiles() {
    desk_.menu.onPrepare(*this, "mnupopup6", [this] { fillFileMenu(); });
    fillFileMenu();
    setAcceptDrops(true);
    const auto fields = findChildren<QLineEdit*>();
    for (QLineEdit* field : fields) // which would take the name of the file for its text
        field->setAcceptDrops(false);
}

void form1::fillFileMenu() {
    std::vector<Frmmenu::Entry> demos;
    if (const auto folder = demosFolder())
        for (const Demo& demo : demosIn(*folder))
            demos.push_back({toQString(demo.title), [this, demo] { openDemo(demo.file, demo.title); }});
    desk_.menu.setEntries(*this, "mnuOpenDemo", demos);
    std::vector<Frmmenu::Entry> recent;
    const QFont font = desk_.menu.popup("mnuRecent").font();
    for (const fs::path& file : files_->recent())
        recent.push_back({captionOf(file, font), [this, file] { openRecent(file); }});
    desk_.menu.setEntries(*this, "mnuRecent", recent);
}

void form1::tellUser(const std::string& words) {
    if (!words.empty())
        tell(skins(), this, toQString(words));
}

bool form1::tellOutcome(const ScoreFiles::Outcome& outcome) {
    if (!outcome.note.empty())
        screen_->mention(outcome.note);
    tellUser(outcome.words);
    return outcome.done;
}

/// Whether the user lets another score take the place of this one, or the program end. Only what is unsaved
/// is asked about. Who wants to save and then doesn't keeps the score.
bool form1::mayReplace() {
    const Workspace& workspace = desk_.workspace;
    if (!workspace.manners.asksBeforeLoss || !workspace.isUnsaved())
        return true;
    switch (askSave(skins(), this, toQString(unsavedQuestion(workspace)))) {
    case SaveAnswer::Save:
        save();
        return !workspace.isUnsaved(); // a MIDI file, say, keeps no score
    case SaveAnswer::Discard:
        return true;
    case SaveAnswer::Cancel:
        break;
    }
    return false;
}

bool form1::mayClose() {
    if (desk_.workspace.manners.asksBeforeLoss)
        return mayReplace();
    if (!desk_.workspace.holdsNotes())
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

void form1::Command33_Click() {
    PlayAndStop_Click(true);
    if (mayReplace())
        tellOutcome(files_->open());
}

void form1::openScore(const fs::path& file) {
    PlayAndStop_Click(true);
    if (mayReplace())
        tellOutcome(files_->open(file));
}

void form1::openDemo(const fs::path& file, const std::string& title) {
    PlayAndStop_Click(true);
    if (mayReplace())
        tellOutcome(files_->openDemo(file, title));
}

void form1::openRecent(const fs::path& file) {
    PlayAndStop_Click(true);
    if (mayReplace())
        tellOutcome(files_->openRecent(file));
}

void form1::bringBack(const LeftScore& left) {
    PlayAndStop_Click(true);
    opened_ = true;
    restore(left, desk_.workspace);
}

bool form1::mSaveAs_Click() {
    if (!desk_.workspace.holdsNotes())
        screen_->mention("There are no notes yet that could be saved");
    return tellOutcome(files_->saveAs());
}

bool form1::save() {
    if (!files_->canSave()) {
        screen_->mention("There are no notes yet that could be saved");
        return false;
    }
    const bool saved = tellOutcome(files_->save());
    if (saved && desk_.workspace.manners.asksBeforeLoss && !desk_.workspace.isUnsaved())
        screen_->mention("Saved: " + desk_.workspace.score.currentFile);
    return saved;
}

/// An asterisk stands for what is not saved.
void form1::showTitle() {
    const Workspace& workspace = desk_.workspace;
    const std::string name = fs::path(workspace.score.currentFile).filename().string();
    QString title = name.empty() ? QStringLiteral("Velmora") : QStringLiteral("Velmora - ") + toQString(name);
    if (workspace.manners.asksBeforeLoss && workspace.isUnsaved())
        title += u'*';
    setWindowTitle(title);
}

void form1::dragEnterEvent(QDragEnterEvent* event) {
    answerDrag(*event);
}

void form1::dragMoveEvent(QDragMoveEvent* event) {
    answerDrag(*event);
}

void form1::dropEvent(QDropEvent* event) {
    answerDrag(*event);
    if (!event->isAccepted())
        return;
    // The other program waits until the drop has been answered, and a question may take long.
    QTimer::singleShot(0, this, [this, file = *draggedScore(*event)] {
        activateWindow();
        openScore(file);
    });
}

} // namespace velmora
