// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/FrmInst.h"
#include "setup/frmsetup.h"
#include "tests/support/RecordingWatcher.h"
#include "tests/tableau/form1Fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace velmora {

/// The setup toolbar among fakes, beside which a watcher is told what it changes.
class SetupFixture : public form1Fixture {
protected:
    SetupFixture() {
        port.names = {"first", "second"};
        windows.makePicker = [this](QWidget& over, std::function<void(PickedInstrument)> picked) {
            auto* picker = new FrmInst(desk(), &over);
            picker->setAttribute(Qt::WA_DeleteOnClose);
            picker->onPicked = std::move(picked);
            picker->open();
        };
    }

    frmsetup& toolbar() {
        if (!toolbar_)
            toolbar_ = std::make_unique<frmsetup>(desk(), nullptr);
        return *toolbar_;
    }
    /// Open, with that panel in front, and with the focus.
    frmsetup& opened(int panel) {
        toolbar().open();
        toolbar().Lmnu_Click(panel);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&toolbar()));
        watcher().told.clear();
        return toolbar();
    }
    void close() { toolbar_.reset(); }

    RecordingWatcher& watcher() {
        if (!watcher_)
            watcher_ = std::make_unique<RecordingWatcher>(workspace());
        return *watcher_;
    }
    /// What the watcher has been told since the last call.
    Changes told() { return watcher().take(); }

    template<class Part = QWidget>
    Part& control(const std::string& name) {
        const auto found = toolbar().findChildren<Part*>(QString::fromStdString(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    template<class Part = QWidget>
    Part& control(const char* array, int index) {
        return control<Part>(std::string(array) + "(" + std::to_string(index) + ")");
    }
    /// Presses a slider at a place along it and drags to another.
    static void drag(QWidget& bar, int from, int to) {
        QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(from, 10));
        if (to != from)
            QTest::mouseMove(&bar, QPoint(to, 10));
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(to, 10));
    }
    void click(QWidget& of) { QTest::mouseClick(&of, Qt::LeftButton); }
    /// Types over what stands there.
    void type(const char* field, const char* text) {
        auto& edit = control<QLineEdit>(field);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
    }
    std::string shownIn(const char* label) {
        if (auto* edit = toolbar().findChild<QLineEdit*>(label))
            return edit->text().toStdString();
        return control<QLabel>(label).text().toStdString();
    }
    static bool holds(const ChannelGrid& grid, int channel, std::int16_t value) {
        return std::ranges::all_of(grid.row(channel), [value](std::int16_t cell) { return cell == value; });
    }
    /// Chooses an item as the user does: with the keys on the closed list.
    void choose(const char* list, int item) {
        auto& combo = control<QComboBox>(list);
        combo.setFocus();
        while (combo.currentIndex() != item)
            QTest::keyClick(&combo, combo.currentIndex() < item ? Qt::Key_Down : Qt::Key_Up);
    }

private:
    std::unique_ptr<RecordingWatcher> watcher_;
    std::unique_ptr<frmsetup> toolbar_;
};

} // namespace velmora
