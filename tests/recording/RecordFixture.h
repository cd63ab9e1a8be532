// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/Record.h"
#include "recording/SessionButton.h"
#include "studio/Studio.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/TestDesk.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

namespace velmora {

/// The Recording Studio among fakes, over rooms of its own.
class RecordFixture : public testing::Test, protected StudioDesk {
protected:
    /// Made at the first call, so that a test may fill the store before.
    Record& window() {
        if (!window_)
            window_ = std::make_unique<Record>(desk(), nullptr);
        return *window_;
    }
    /// Open, and with the focus.
    Record& opened() {
        window().open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        return window();
    }
    void destroy() { window_.reset(); }

    SessionState& state() { return studio().state; }
    /// As the session does when something of the state has changed.
    void showState() { window().sessionChanged(); }
    /// As if a take of that source went on, without one.
    void lock(RecordingSource source = RecordingSource::Keyboard) {
        window();
        state().source = source;
        state().isRecording = state().isLocked = true;
        showState();
    }

    template<class Part = QWidget>
    Part& control(const char* name) {
        const auto found = window().findChildren<Part*>(QLatin1String(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    std::string text(const char* label) { return control<QLabel>(label).text().toStdString(); }
    std::string messages() { return control<QPlainTextEdit>("Erbox").toPlainText().toStdString(); }
    bool isEnabled(const char* name) { return control(name).isEnabled(); }
    void click(const char* name) { QTest::mouseClick(&control(name), Qt::LeftButton); }
    QAction& item(const char* name) { return menu.item(name); }

    DialogDriver driver;

private:
    std::unique_ptr<Record> window_;
};

} // namespace velmora
