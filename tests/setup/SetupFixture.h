// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "setup/frmsetup.h"
#include "tests/tableau/form1Fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace velmora {

/// A port whose devices come, go and fail.
class DevicesPort : public RecordingPort {
public:
    using RecordingPort::RecordingPort;
    int deviceCount() override { return static_cast<int>(names.size()); }
    std::string deviceName(int device) override {
        return device >= 0 && device < deviceCount() ? names[static_cast<std::size_t>(device)] : "";
    }
    int open(int device) override {
        opened.push_back(device);
        return failing && device >= 0 ? 1 : kOk;
    }

    std::vector<std::string> names{"first", "second"};
    std::vector<int> opened;
    bool failing = false;
};

/// The setup toolbar among fakes, with a composing window that writes down what it is asked.
class SetupFixture : public form1Fixture {
protected:
    frmsetup& toolbar() {
        if (!toolbar_) {
            app_ = std::make_unique<Application>(applicationOn(midi, midiDevices));
            toolbar_ = std::make_unique<frmsetup>(*app_, composing(), nullptr);
        }
        return *toolbar_;
    }
    /// Open, with that panel in front, and with the focus.
    frmsetup& opened(int panel) {
        toolbar().open();
        toolbar().Lmnu_Click(panel);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&toolbar()));
        asked.clear();
        return toolbar();
    }
    void close() { toolbar_.reset(); }

    ComposingWindow composing() {
        const auto note = [this](const char* what) { return [this, what] { asked.emplace_back(what); }; };
        return {
            .TrackSel_Click =
                [this](int channel) {
                    asked.push_back("TrackSel " + std::to_string(channel));
                    workspace().selectChannel(channel);
                },
            .DrawNoteArray = note("notes"),
            .DrawBeatArray = note("beats"),
            .PrintTopBar = note("top bar"),
            .drawChordMarks = [this](int channel) { asked.push_back("chords " + std::to_string(channel)); },
            .layOut = note("lay out"),
            .NumNotesChanged = note("length"),
            .setRightClickMode =
                [this](RightClick mode) {
                    asked.push_back("mode " + std::to_string(static_cast<int>(mode)));
                },
            .toggleMuted = [this](int channel) { workspace().toggleMuted(channel); },
            .showInstruments = note("instruments"),
            .showChannels = note("channels"),
            .showUndo = note("undo")};
    }

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

    DevicesPort midi{loop};
    DeviceChooser midiDevices{midi,
                              {.read = [this]() -> std::optional<int> {
                                   const std::string text = stored("Devices");
                                   return text == "none" ? std::nullopt : std::optional(std::stoi(text));
                               },
                               .write = [this](int device) { store("Devices", std::to_string(device)); }}};
    std::vector<std::string> asked;

private:
    std::unique_ptr<Application> app_;
    std::unique_ptr<frmsetup> toolbar_;
};

} // namespace velmora
