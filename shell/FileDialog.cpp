// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FileDialog.h"

#include "base/Text.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QTreeView>

#include <algorithm>

namespace velmora {

namespace fs = std::filesystem;

namespace {
/// Large enough for a dozen names beside the places; smaller screens scroll.
constexpr QSize kLeastSize(480, 320);
constexpr QSize kFirstSize(720, 480);

/// The parts of Qt's dialog by their names there; a platform's dialog has none.
constexpr const char* kNameEdit = "fileNameEdit";
constexpr const char* kList = "listView";
constexpr const char* kTree = "treeView";
constexpr const char* kTypeCombo = "fileTypeCombo";

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

FileDialog::FileDialog(QWidget* parent, DialogSource source, FileRequest request)
    : QFileDialog(parent)
    , request_(std::move(request))
    , nameFilters_(velmora::nameFilters(request_.filters))
    , extension_(request_.extension) {
    setOption(DontUseNativeDialog, source == DialogSource::Qt);
    setOption(HideNameFilterDetails); // labels say what there is to say
    setOption(DontConfirmOverwrite);  // we ask, once the whole name is known
    if (!request_.title.empty())
        setWindowTitle(QString::fromStdString(request_.title));
    setAcceptMode(request_.mode);
    setFileMode(saves() ? AnyFile : ExistingFile);
    showWholeColumns();
    setMinimumSize(kLeastSize);
    resize(kFirstSize);
    setHistory({});

    const QString folder = nearestFolder(request_.start.folder);
    setDirectory(folder);
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

ModalEnd FileDialog::run() {
    while (true) {
        const ModalEnd end = runModally(*this);
        if (end != ModalEnd::Accepted || !isOfPlatform())
            return end;
        // A platform's dialog is gone when we learn the name; "no" brings it back.
        const auto file = fileInTheWay();
        if (!file)
            return end;
        const QPointer<FileDialog> guard(this);
        const bool agreed = question(*file)->exec() == QMessageBox::Yes;
        if (!guard)
            return ModalEnd::Destroyed;
        if (agreed)
            return end;
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

void FileDialog::done(int result) {
    const auto file = result == Accepted && !isOfPlatform() ? fileInTheWay() : std::nullopt;
    if (!file) {
        QFileDialog::done(result);
        return;
    }
    // Not in a loop of its own: we may be inside a key press of one of our parts, which must survive it.
    auto* box = question(*file);
    closeWithParent(*box);
    connect(box, &QDialog::finished, this, [this](int button) {
        if (button == QMessageBox::Yes)
            QFileDialog::done(Accepted);
    });
    box->open();
}

/// Qt's columns cut sizes and dates in fonts as wide as ours; only names may need more than there is.
void FileDialog::showWholeColumns() {
    const auto* tree = findChild<QTreeView*>(kTree);
    if (!tree)
        return;
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
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

bool FileDialog::isOfPlatform() const {
    return !findChild<QLineEdit*>(kNameEdit);
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

QMessageBox* FileDialog::question(const fs::path& file) {
    const QString text = tr("%1 already exists.\nDo you want to replace it?");
    auto* box =
        new QMessageBox(QMessageBox::Warning, windowTitle(), text.arg(textOfBytes(file.filename().native())),
                        QMessageBox::Yes | QMessageBox::No, this);
    box->setTextFormat(Qt::PlainText); // names may look like anything
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setDefaultButton(QMessageBox::No);
    return box;
}

} // namespace velmora
