// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Settings.h"
#include "base/VirtualLoop.h"
#include "parts/Application.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/frminfo.h"
#include "shell/frmskins.h"
#include "sound/DeviceChooser.h"
#include "tableau/form1.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingPort.h"
#include "tests/support/ScriptedDialogs.h"

#include <QAction>
#include <QMenu>
#include <QTest>

#include <set>

namespace velmora {

/// A recording port that knows which device is open.
class DevicePort : public RecordingPort {
public:
    using RecordingPort::RecordingPort;
    int open(int device) override {
        opened.push_back(device);
        return refused.contains(device) ? kOk + 1 : kOk;
    }
    int close() override {
        ++closed;
        return kOk;
    }

    std::vector<int> opened;
    std::set<int> refused; ///< devices that can't be opened
    int closed = 0;
};

/// A virtual clock on which a hand may act at each step of playing.
class HandLoop : public VirtualLoop {
public:
    void serveUntil(double moment) override {
        VirtualLoop::serveUntil(moment);
        ++waits;
        if (onWait)
            onWait(waits);
    }

    std::function<void(int)> onWait; ///< with the number of the wait, from 1
    int waits = 0;
};

/// The composing window among fakes: everything that it is given, and nothing of the machine's.
class form1Fixture : public WorkspaceFixture {
protected:
    form1Fixture() { environment_.set("VELMORA_DATA", (folders.home() / "data").string()); }

    /// Made at the first call, so that a test may fill the store before.
    form1& window() {
        if (!form_) {
            form_ = std::make_unique<form1>(application());
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
    Application& application() {
        if (!application_)
            application_ = std::make_unique<Application>(applicationOn(port, devices));
        return *application_;
    }
    /// What windows are given, with that MIDI port and its chooser.
    Application applicationOn(MidiPort& midi, DeviceChooser& chooser) {
        return Application{.settings = settings,
                           .folders = folders,
                           .skins = skins,
                           .menu = menu,
                           .tips = tips,
                           .dialogs = dialogs,
                           .loop = loop,
                           .port = midi,
                           .devices = chooser,
                           .workspace = workspace(),
                           .openHelp = [this](const QString& page) { pages.push_back(page.toStdString()); },
                           .setup = {.open = [this] { ++setupOpened; },
                                     .channelChanged = [this] { ++channelChanges; },
                                     .refresh = [this] { ++refreshes; },
                                     .pickInstrument = [this](auto picked) { onPick = std::move(picked); },
                                     .showMapper = [this] { ++mappersShown; }},
                           .quit = [this] { ++quits; }};
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
    std::string stored(std::string_view key) { return settings.GetSetting("Settings", key, "none"); }
    std::string text(const char* label) { return child<QLabel>(label).text().toStdString(); }
    bool isOpen(const char* popup) { return menu.popup(popup).isVisible(); }

    DialogDriver driver;
    ScriptedDialogs dialogs;
    HandLoop loop;
    DevicePort port{loop};
    DeviceChooser devices{port,
                          {.read = [this]() -> std::optional<int> {
                               const std::string text = stored("Devices");
                               return text == "none" ? std::nullopt : std::optional(std::stoi(text));
                           },
                           .write = [this](int device) { store("Devices", std::to_string(device)); }}};
    frmskins skins{settings};
    ExToolTip tips{settings};
    Frmmenu menu;
    std::vector<std::string> pages;
    int quits = 0;
    int setupOpened = 0;
    int channelChanges = 0;
    int refreshes = 0;
    int mappersShown = 0;
    std::function<void(std::int16_t)> onPick; ///< to be called with the instrument that is picked

private:
    Environment environment_;
    std::unique_ptr<Application> application_;
    std::unique_ptr<form1> form_;
};

} // namespace velmora
