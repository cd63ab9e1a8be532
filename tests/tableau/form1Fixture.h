// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Settings.h"
#include "shell/CommandButton.h"
#include "shell/frminfo.h"
#include "tableau/form1.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/Environment.h"
#include "tests/support/TestDesk.h"

#include <QAction>
#include <QMenu>
#include <QTest>

namespace velmora {

/// The composing window among fakes.
class form1Fixture : public testing::Test, protected TestDesk {
protected:
    form1Fixture() { environment_.set("VELMORA_DATA", (folders.home() / "data").string()); }

    /// Made at the first call, so that a test may fill the store before.
    form1& window() {
        if (!form_) {
            form_ = std::make_unique<form1>(desk());
            form_->resize(1366, 768);
        }
        return *form_;
    }
    /// Shown, and with the focus.
    form1& shown() {
        window().show();
        window().activateWindow();
        QApplication::processEvents();
        EXPECT_TRUE(window().isActiveWindow());
        return window();
    }

    template<class Part = QWidget>
    Part& child(const char* name) {
        const auto found = window().findChildren<Part*>(QLatin1String(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    CommandButton& button(const char* array, int index) {
        return child<CommandButton>(qPrintable(QStringLiteral("%1(%2)").arg(array).arg(index)));
    }
    QAbstractButton& square(int channel) {
        return child<QAbstractButton>(qPrintable(QStringLiteral("Label8(%1)").arg(channel)));
    }
    std::string text(const char* label) { return child<QLabel>(label).text().toStdString(); }
    bool isOpen(const char* popup) { return menu.popup(popup).isVisible(); }

    DialogDriver driver;

private:
    Environment environment_;
    std::unique_ptr<form1> form_;
};

} // namespace velmora
