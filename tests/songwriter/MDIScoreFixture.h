// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "songwriter/MDIScore.h"
#include "songwriter/PageArea.h"
#include "songwriter/PageView.h"
#include "songwriter/ScoreSheet.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/TestDesk.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

namespace velmora {

/// The Songwriter among fakes, with a score of some bars.
class MDIScoreFixture : public testing::Test, protected TestDesk {
protected:
    /// Made at the first call, so that a test may fill the store before.
    MDIScore& window() {
        if (!window_) {
            windows.present.insert(Windows::Name::frmsynth);
            windows.present.insert(Windows::Name::fPrint);
            window_ = std::make_unique<MDIScore>(desk());
        }
        return *window_;
    }
    /// Open, and with the focus.
    MDIScore& opened() {
        window().open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        return window();
    }
    void destroy() { window_.reset(); }
    void beCareful() { workspace().setManners(Manners::careful()); }

    /// Quarters on a channel for so many measures.
    void putBars(int bars, int channel = 0, int row = 60) {
        putNotes(score(), channel, row, bars * 4, 4);
        score().ChannelInUse[channel] = true;
    }
    template<class Part = QWidget>
    Part& control(const char* name) {
        const auto found = window().findChildren<Part*>(QLatin1String(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    void press(int index) { window().Lb1_Click(index); }
    void click(const char* name) { QTest::mouseClick(&control(name), Qt::LeftButton); }
    void tick(const char* name) { control<QAbstractButton>(name).click(); }
    QAction& item(const char* name) { return menu.item(name); }
    PageArea& pages() { return window().pages(); }
    ScoreSheet& front() { return *pages().frontSheet(); }
    /// Types into the holder of the page before all others.
    void type(const QString& text) {
        auto& field = *front().findChild<QLineEdit*>("Text1");
        field.setText(text);
        QTest::keyClick(&field, Qt::Key_Return);
    }
    std::vector<std::string> textsOf(int page) {
        std::vector<std::string> texts;
        for (const notation::LyricsItem& one : song().sheets().itemsOf(page))
            texts.push_back(one.text);
        return texts;
    }

    DialogDriver driver;

private:
    std::unique_ptr<MDIScore> window_;
};

} // namespace velmora
