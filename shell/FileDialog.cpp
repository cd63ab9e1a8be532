// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FileDialog.h"

#include "base/Text.h"
#include "shell/FilePlaces.h"
#include "shell/FileWindow.h"
#include "shell/MessageBox.h"

#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>

#include <algorithm>
#include <array>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr int kPlacesWidth = 132;
constexpr QSize kIconSize(16, 16);

/// The parts of Qt's dialog by their names there.
constexpr const char* kNameEdit = "fileNameEdit";
constexpr const char* kList = "listView";
constexpr const char* kTree = "treeView";
constexpr const char* kTypeCombo = "fileTypeCombo";
constexpr std::array kNotShown{"sidebar", "listModeButton", "detailModeButton"};

/// The columns of the list, as `QFileSystemModel` has them.
enum Column { NameColumn, SizeColumn, TypeColumn, DateColumn };

/// On a change of type Qt exchanges whatever follows the last point of the name, even in "opus.1", by what
/// follows it in the first pattern. A first pattern without a point, which no name can match, prevents that.
QStringList withInertPattern(QStringList filters) {
    for (QString& filter : filters)
        filter.insert(filter.lastIndexOf('(') + 1, "/ ");
    return filters;
}

int validIndex(const FileRequest& request) {
    const int count = static_cast<int>(request.filters.size());
    return request.filterIndex >= 1 && request.filterIndex <= count ? request.filterIndex : 1;
}

QString proposedName(const FileRequest& request, const QString& folder) {
    const QString name = textOfBytes(request.start.name);
    const bool exists = QFileInfo::exists(QDir(folder).filePath(name));
    // Opening can't propose what is not there.
    return request.mode == QFileDialog::AcceptSave || exists ? name : QString();
}
} // namespace

FileDialog::FileDialog(FileDesk& desk, FileRequest request, QWidget* parent)
    : QFileDialog(parent)
    , request_(std::move(request))
    , nameFilters_(velmora::nameFilters(request_.filters))
    , extension_(request_.extension)
    , skins_(desk.skins) {
    setWindowFlags(Qt::Widget);
    setOption(DontUseNativeDialog);
    setOption(HideNameFilterDetails); // labels say what there is to say
    setOption(DontConfirmOverwrite);  // we ask, once the whole name is known
    if (!request_.title.empty())
        setWindowTitle(QString::fromStdString(request_.title));
    setAcceptMode(request_.mode);
    setFileMode(saves() ? AnyFile : ExistingFile);
    setViewMode(Detail);
    setIconProvider(&desk.icons);
    arrangeParts(desk);
    arrangeList();
    setHistory({});

    const QString folder = nearestFolder(request_.start.folder);
    setDirectory(folder);
    places_->follow(directory().absolutePath()); // Qt's dialog may have been there already
    if (!nameFilters_.isEmpty())
        showTypes(validIndex(request_) - 1);
    if (request_.rule != ExtensionRule::Callers && extension_.empty())
        followType();
    const QString name = proposedName(request_, folder);
    if (!name.isEmpty())
        selectFile(QDir(folder).filePath(name));
    if (request_.rule != ExtensionRule::Callers)
        connect(this, &QFileDialog::filterSelected, this, [this] { followType(); });
}

/// Our places in place of Qt's, and nothing that is not needed: files are listed in one manner.
void FileDialog::arrangeParts(FileDesk& desk) {
    setSizeGripEnabled(false); // the window has edges for that
    layout()->setContentsMargins(0, 0, 0, 0);
    for (const char* name : kNotShown)
        if (auto* part = findChild<QWidget*>(name))
            part->hide();
    auto* splitter = findChild<QSplitter*>();
    const auto purpose = saves() ? PlacesFor::Saving : PlacesFor::Opening;
    places_ = new FilePlaces(desk.skins.look(), filePlaces(desk.folders, purpose), splitter);
    splitter->insertWidget(0, places_);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(8);
    places_->setMinimumWidth(kPlacesWidth);
    splitter->setStretchFactor(0, 0);
    splitter->setSizes({kPlacesWidth, 0, width()});
    places_->onChosen = [this](const QString& folder) { setDirectory(folder); };
    // The dialog's own signal misses folders that are typed; its model sees every one.
    if (auto* model = findChild<QFileSystemModel*>())
        connect(model, &QFileSystemModel::rootPathChanged, places_, &FilePlaces::follow);
}

/// Qt's columns cut sizes and dates in fonts as wide as ours; only names may need more than there is.
void FileDialog::arrangeList() {
    auto* tree = findChild<QTreeView*>(kTree);
    if (!tree)
        return;
    QHeaderView* header = tree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    header->moveSection(header->visualIndex(DateColumn), 1);
    header->hideSection(TypeColumn); // the icon says it
    // The names that are offered while one is typed look like those of the list.
    if (auto* edit = findChild<QLineEdit*>(kNameEdit); edit && edit->completer())
        edit->completer()->popup()->setIconSize(kIconSize);
    tree->setIconSize(kIconSize);
    tree->installEventFilter(this);
    for (auto* view : {static_cast<QAbstractItemView*>(tree),
                       static_cast<QAbstractItemView*>(findChild<QListView*>(kList))}) {
        // A file is neither renamed nor deleted where one is chosen: a slip of the hand would cost music.
        view->setContextMenuPolicy(Qt::NoContextMenu);
        view->setEditTriggers(QAbstractItemView::NoEditTriggers);
        qDeleteAll(view->findChildren<QShortcut*>()); // of the key Delete
    }
}

std::string FileDialog::chosenPath() const {
    const QString text = selectedFiles().value(0);
    const std::string bytes = isPlainText(request_.start.name) ? text.toStdString() : bytesOfText(text);
    std::string path = tidyFileName(bytes);
    return saves() ? withExtensionIfNone(std::move(path), extension_) : path;
}

int FileDialog::filterIndex() const {
    if (const auto* combo = findChild<QComboBox*>(kTypeCombo); combo && !nameFilters_.isEmpty())
        return combo->currentIndex() + 1;
    return static_cast<int>(nameFilters_.indexOf(selectedNameFilter())) + 1;
}

/// Qt would say it in a window that looks like none of ours.
void FileDialog::accept() {
    const QString file = selectedFiles().value(0);
    if (!saves() && !file.isEmpty() && !QFileInfo::exists(file)) {
        showMessage(skins_, window(), tr("There is no \"%1\".").arg(QDir::toNativeSeparators(file)));
        return;
    }
    QFileDialog::accept();
}

/// The first step down the list takes its first file; Qt's would pass it.
bool FileDialog::eventFilter(QObject* watched, QEvent* event) {
    auto* tree = qobject_cast<QTreeView*>(watched);
    if (tree && event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down &&
        !tree->selectionModel()->hasSelection()) {
        tree->selectionModel()->clearCurrentIndex();
        tree->setCurrentIndex(tree->model()->index(0, NameColumn, tree->rootIndex()));
        return true;
    }
    return QFileDialog::eventFilter(watched, event);
}

void FileDialog::done(int result) {
    const auto file = result == Accepted ? fileInTheWay() : std::nullopt;
    if (!file) {
        QFileDialog::done(result);
        return;
    }
    // Not in a loop of its own: we may be inside a key press of one of our parts, which must survive it.
    const QString text = tr("%1 already exists.\nDo you want to replace it?");
    ask(skins_, window(), text.arg(textOfBytes(file->filename().native())), Answer::No,
        [this](Answer answer) {
            if (answer == Answer::Yes)
                QFileDialog::done(Accepted);
        });
}

void FileDialog::showTypes(int selected) {
    auto* combo = findChild<QComboBox*>(kTypeCombo);
    if (!combo) {
        setNameFilters(nameFilters_);
        selectNameFilter(nameFilters_[selected]);
        return;
    }
    setNameFilters(withInertPattern(nameFilters_));
    // Qt would look for the type by its label, which another may share.
    combo->setCurrentIndex(selected);
    emit combo->activated(selected);
}

void FileDialog::followType() {
    const int index = filterIndex();
    const std::string old = extension_;
    if (index > 0)
        extension_ = extensionOf(request_.filters[static_cast<std::size_t>(index) - 1]);
    if (extension_.empty())
        extension_ = request_.extension;
    auto* edit = findChild<QLineEdit*>(kNameEdit);
    if (!saves() || !edit || old.empty() || extension_.empty())
        return;
    const QString text = edit->text();
    const QString oldEnd = QString::fromStdString(old);
    if (!text.endsWith(oldEnd, Qt::CaseInsensitive))
        return;
    // A file that is still marked in the list would be taken instead of the name.
    if (auto* list = findChild<QListView*>(kList))
        list->clearSelection();
    edit->setText(text.chopped(oldEnd.size()) + QString::fromStdString(extension_));
}

std::optional<fs::path> FileDialog::fileInTheWay() const {
    if (!saves())
        return std::nullopt;
    const std::string path = chosenPath();
    std::vector<fs::path> written{withExtension(path, extension_)};
    if (request_.rule != ExtensionRule::OfType)
        written.emplace_back(path);
    const auto found = std::ranges::find_if(written, [](const fs::path& file) {
        std::error_code ignored;
        return fs::exists(file, ignored);
    });
    return found == written.end() ? std::nullopt : std::optional(*found);
}

} // namespace velmora
