// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tests/support/Waiting.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace velmora {

/// The hand at a modal dialog: each step runs inside the loop of the dialog that is open by then. Steps that
/// never ran, and dialogs that nobody ended in time, fail the test.
class DialogDriver {
public:
    DialogDriver() {
        QObject::connect(&watchdog_, &QTimer::timeout, [] {
            if (!QApplication::activeModalWidget())
                return; // the test takes long, for want of a processor
            ADD_FAILURE() << "a dialog stayed open";
            endAll();
        });
        watchdog_.start(std::chrono::milliseconds(static_cast<int>(5000 * kPatience)));
    }
    ~DialogDriver() { EXPECT_EQ(done_, planned_) << "steps that found no dialog"; }
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    /// Call it before the dialog is shown, or from a step that opens another one.
    template<class Dialog, class Step>
    void in(Step step) {
        ++planned_;
        QTimer::singleShot(0, &context_, [this, step] {
            auto* dialog = openDialog<Dialog>();
            ASSERT_TRUE(dialog) << "no dialog of this kind is open" << (endAll(), "");
            ++done_;
            // Qt's dialogs ask which of their parts has the focus, and none has before this.
            dialog->activateWindow();
            waitUntil([dialog] { return dialog->isActiveWindow(); });
            step(*dialog);
        });
    }

    /// Takes events until it is so; the watchdog sees to it that there is always one.
    template<class Condition>
    void waitUntil(Condition isSo) {
        while (!isSo() && QApplication::activeModalWidget())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    /// The modal window, or the dialog that stands in it.
    template<class Dialog>
    static Dialog* openDialog() {
        QWidget* window = QApplication::activeModalWidget();
        auto* dialog = qobject_cast<Dialog*>(window);
        return dialog || !window ? dialog : window->findChild<Dialog*>();
    }
    static void endAll() {
        while (QWidget* dialog = QApplication::activeModalWidget())
            dialog->close();
    }

    QObject context_;
    QTimer watchdog_;
    int planned_ = 0;
    int done_ = 0;
};

/// A part of Qt's dialog by the name it has there.
template<class Part>
Part& part(QWidget& dialog, const char* name) {
    auto* found = dialog.findChild<Part*>(name);
    if (!found)
        throw std::runtime_error(name);
    return *found;
}

inline void press(QDialog& dialog, QDialogButtonBox::StandardButton button) {
    dialog.findChild<QDialogButtonBox*>()->button(button)->click();
}

inline QLineEdit& nameEdit(QFileDialog& dialog) {
    return part<QLineEdit>(dialog, "fileNameEdit");
}
/// Presses "Open" or "Save".
inline void confirm(QFileDialog& dialog) {
    press(dialog,
          dialog.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open);
}
/// Types a name and presses Return: the button waits for the list of files, which comes when it comes.
inline void typeAndConfirm(QFileDialog& dialog, const QString& name) {
    nameEdit(dialog).setFocus();
    nameEdit(dialog).setText(name);
    QTest::keyClick(&nameEdit(dialog), Qt::Key_Return);
}
/// Moves @p steps down the list of types by keyboard.
inline void nextType(QFileDialog& dialog, int steps = 1) {
    for (int i = 0; i < steps; ++i)
        QTest::keyClick(&part<QComboBox>(dialog, "fileTypeCombo"), Qt::Key_Down);
}
inline QStringList shownTypes(QFileDialog& dialog) {
    QStringList texts;
    const auto& combo = part<QComboBox>(dialog, "fileTypeCombo");
    for (int i = 0; i < combo.count(); ++i)
        texts.append(combo.itemText(i));
    return texts;
}

} // namespace velmora
