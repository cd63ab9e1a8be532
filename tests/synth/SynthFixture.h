// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Settings.h"
#include "parts/FrmInst.h"
#include "sound/ShortMessage.h"
#include "synth/frmsynth.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/TestDesk.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>

namespace velmora {

/// A key of a computer as a window system tells of it.
struct HandKey {
    quint32 place; ///< scan code
    int key;       ///< Qt's
    const char* text;
};
inline constexpr HandKey kZ{52, Qt::Key_Z, "z"};
inline constexpr HandKey kX{53, Qt::Key_X, "x"};
inline constexpr HandKey kQ{24, Qt::Key_Q, "q"};
inline constexpr HandKey kSpaceKey{65, Qt::Key_Space, " "};

/// The keyboard's window among fakes.
class SynthFixture : public testing::Test, protected TestDesk {
protected:
    SynthFixture() {
        port.names = {"first", "second"};
        windows.makePicker = [this](QWidget& over, std::function<void(PickedInstrument)> picked) {
            auto* picker = new FrmInst(desk(), &over);
            picker->setAttribute(Qt::WA_DeleteOnClose);
            picker->onPicked = std::move(picked);
            picker->open();
        };
    }
    void beCareful() { store("Classic", "0"); }

    frmsynth& window() {
        if (!window_)
            window_ = std::make_unique<frmsynth>(desk(), nullptr);
        return *window_;
    }
    /// Shown, with that page in front and the focus, and with what loading sent forgotten.
    frmsynth& opened(int page = 4) {
        window().open();
        window().resize(1192, 396);
        window().Lmnu_Click(page);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        port.sent.clear();
        return window();
    }
    void end() { window_.reset(); }

    template<class Part = QWidget>
    Part& control(const std::string& name) {
        const auto found = window().template findChildren<Part*>(QString::fromStdString(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    template<class Part = QWidget>
    Part& control(const char* array, int index) {
        return control<Part>(std::string(array) + "(" + std::to_string(index) + ")");
    }
    QAbstractButton& button(int index) { return control<QAbstractButton>("Lb1", index); }
    std::string shownIn(const char* label) { return control<QLabel>(label).text().toStdString(); }
    static void click(QWidget& of) { QTest::mouseClick(&of, Qt::LeftButton); }
    /// Presses a slider at a share of its pointer's way.
    static void dragTo(QWidget& bar, double share) {
        const QPoint at(static_cast<int>(6 + share * (bar.width() - 12)), 10);
        QTest::mousePress(&bar, Qt::LeftButton, {}, at);
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, at);
    }

    /// What the window system tells goes to what has the focus.
    bool tell(QEvent::Type type, const HandKey& key, Qt::KeyboardModifiers modifiers = {},
              quint64 timestamp = 0, bool repeats = false) {
        QKeyEvent event(type, key.key, modifiers, key.place, 0, 0, QString::fromUtf8(key.text), repeats);
        event.setTimestamp(timestamp);
        QWidget* receiver = QApplication::focusWidget() ? QApplication::focusWidget() : &window();
        event.ignore();
        QCoreApplication::sendEvent(receiver, &event);
        return event.isAccepted();
    }
    void down(const HandKey& key) { tell(QEvent::KeyPress, key); }
    void up(const HandKey& key) { tell(QEvent::KeyRelease, key); }

    /// What was sent since the last call.
    std::vector<std::uint32_t> sent() {
        auto words = port.words();
        port.sent.clear();
        return words;
    }
    static std::uint32_t on(int note, int velocity = 100, int channel = 0) {
        return shortmessage::noteOn(channel, note, velocity);
    }
    static std::uint32_t off(int note, int channel = 0) { return shortmessage::noteOff(channel, note); }
    /// Lets time pass on the keyboard's clock.
    void pass(double seconds) {
        const double end = loop.now() + seconds;
        while (const auto due = window().keyboard().nextDue()) {
            if (*due > end)
                break;
            loop.serveUntil(*due);
            window().runDue();
        }
        loop.serveUntil(end);
    }

    DialogDriver driver;

private:
    std::unique_ptr<frmsynth> window_;
};

} // namespace velmora
