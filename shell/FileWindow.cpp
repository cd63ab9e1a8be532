// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FileWindow.h"

#include "shell/ExToolTip.h"
#include "shell/FileDialog.h"
#include "shell/FilePlaces.h"
#include "shell/FramePainter.h"

#include <QDialogButtonBox>
#include <QEventLoop>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>

#include <array>

namespace velmora {

namespace {
constexpr int kMargin = 12;
/// Large enough for a dozen names beside the places; smaller screens scroll.
constexpr QSize kLeast(520, 340);

/// The parts of the dialog by their names there.
struct PartWords {
    const char* part;
    const char* title;
    const char* opening;
    const char* saving;
};
constexpr std::array kParts{
    PartWords{"lookInCombo", "Folder", "Where you are. The list has the folders above.", nullptr},
    PartWords{"backButton", "Back", "To the folder that was shown before", nullptr},
    PartWords{"forwardButton", "Forward", "To the folder that you went back from", nullptr},
    PartWords{"toParentButton", "Up", "To the folder that this one stands in", nullptr},
    PartWords{"newFolderButton", "New folder", "Makes a folder here; type its name", nullptr},
    PartWords{"places", "Places", "Folders that are often wanted", nullptr},
    PartWords{"treeView", "Files", "A double click opens a file or a folder",
              "A click takes the name of a file, a double click opens a folder"},
    PartWords{"fileNameEdit", "File name", "Type a name or choose it from the list; what fits is offered",
              "The name that the file gets"},
    PartWords{"fileTypeCombo", "Type of file", "Which files are listed", "What is written"},
};
} // namespace

FileWindow::FileWindow(FileDesk& desk, QWidget* parent, FileRequest request)
    : SkinnedWindow(desk.skins, {.maximize = true}, parent, Qt::Dialog)
    , desk_(desk)
    , dialog_(new FileDialog(desk, std::move(request), Ibak5())) {
    setObjectName("fileWindow");
    setWindowModality(Qt::ApplicationModal);
    setMinimumSize(kLeast);
    connect(dialog_, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWindowTitle(dialog_->windowTitle());
    nameParts();
    resize(desk.size.boundedTo(screen()->availableSize()).expandedTo(kLeast));
}

FileWindow::~FileWindow() = default;

void FileWindow::nameParts() {
    attachTips(desk_.tips);
    const bool saves = dialog_->acceptMode() == QFileDialog::AcceptSave;
    const auto give = [this](QWidget& control, const char* title, const char* text) {
        control.setToolTip({}); // Qt's own would look unlike all others
        control.setAccessibleName(title);
        desk_.tips.SetToolTip(control, {title, text, ""});
    };
    for (const PartWords& row : kParts)
        if (auto* control = dialog_->findChild<QWidget*>(row.part))
            give(*control, row.title, saves && row.saving ? row.saving : row.opening);
    if (auto* tree = dialog_->findChild<QTreeView*>())
        give(*tree->header(), "Columns", "A press sorts the files by this column");
    const auto* buttons = dialog_->findChild<QDialogButtonBox*>();
    if (auto* button = buttons->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open))
        give(*button, saves ? "Save" : "Open",
             saves ? "Writes the file under this name" : "Opens the chosen file");
    if (auto* button = buttons->button(QDialogButtonBox::Cancel))
        give(*button, "Cancel", "Leaves everything as it was");
}

/// In the middle of its parent, but on the screen.
void FileWindow::place() {
    const QWidget* owner = parentWidget() ? parentWidget()->window() : nullptr;
    const QRect area = (owner ? owner->screen() : screen())->availableGeometry();
    QRect frame(QPoint(), size().boundedTo(area.size()));
    frame.moveCenter(owner ? owner->frameGeometry().center() : area.center());
    frame.moveRight(std::min(frame.right(), area.right()));
    frame.moveBottom(std::min(frame.bottom(), area.bottom()));
    frame.moveTopLeft({std::max(frame.left(), area.left()), std::max(frame.top(), area.top())});
    setGeometry(frame);
}

ModalEnd FileWindow::run() {
    const QPointer<FileWindow> guard(this);
    QEventLoop loop;
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    connect(dialog_, &QDialog::finished, &loop, &QEventLoop::quit);
    closeWithParent(*this);
    place();
    dialog_->setResult(QDialog::Rejected);
    dialog_->show();
    show();
    activateWindow();
    loop.exec(QEventLoop::DialogExec);
    if (!guard)
        return ModalEnd::Destroyed;
    if (!isMaximized())
        desk_.size = size();
    hide();
    return dialog_->result() == QDialog::Accepted ? ModalEnd::Accepted : ModalEnd::Cancelled;
}

void FileWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    dialog_->reject();
}

void FileWindow::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    dialog_->setGeometry(Ibak5()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin));
}

void FileWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        SkinnedWindow::keyPressEvent(event);
}

} // namespace velmora
