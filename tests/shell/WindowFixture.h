// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Settings.h"
#include "shell/ExToolTip.h"
#include "shell/SkinnedWindow.h"
#include "tests/support/MemorySettings.h"

#include <QMouseEvent>
#include <QTest>

#include <memory>

#include <gmock/gmock.h>

namespace velmora {

/// A window with every title button and nothing in it, which tells how often it was moved or laid out.
class TestWindow : public SkinnedWindow {
public:
    explicit TestWindow(frmskins& skins)
        : SkinnedWindow(skins, {.maximize = true, .minimize = true, .help = true}) {
        setObjectName("testWindow");
        setMinimumSize(120, 80);
    }
    int moves = 0;
    int paints = 0;

protected:
    void moveEnded() override { ++moves; }
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        SkinnedWindow::paintEvent(event);
    }
};

/// Windows in a skin of their own settings.
class WindowFixture : public testing::Test {
protected:
    explicit WindowFixture(int skinType = 1) {
        settings::save(settings, settings::Skin_type, static_cast<std::int16_t>(skinType));
        skins = std::make_unique<frmskins>(settings);
    }
    static void open(QWidget& window) {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    template<class Part = QWidget>
    [[nodiscard]] static Part& part(const QWidget& window, const char* name) {
        Part* found = window.findChild<Part*>(name);
        if (!found)
            throw std::runtime_error(std::string("there is no ") + name);
        return *found;
    }
    /// The mouse of a drag, whose places are on the screen: Qt's own test events know only the widget.
    static void mouse(QWidget& target, QEvent::Type type, QPoint at) {
        const bool down = type != QEvent::MouseButtonRelease;
        QMouseEvent event(type, target.mapFromGlobal(QPointF(at)), QPointF(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
    }
    /// Presses the middle of the part, moves by so much in two steps and lets go.
    static void drag(QWidget& target, QPoint by) {
        const QPoint start = target.mapToGlobal(target.rect().center());
        mouse(target, QEvent::MouseButtonPress, start);
        mouse(target, QEvent::MouseMove, start + by / 2);
        mouse(target, QEvent::MouseMove, start + by);
        mouse(target, QEvent::MouseButtonRelease, start + by);
    }

    MemorySettings settings;
    std::unique_ptr<frmskins> skins;
    ExToolTip tips{settings};
};

} // namespace velmora
