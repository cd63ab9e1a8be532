// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QRect;
class QSize;
class QWidget;

namespace velmora {

/// Keeps a window under another one, as wide as that, wherever it goes.
class Docking : public QObject {
public:
    /// @param over may be null, and then nothing is docked
    /// @param place is called when the window is docked, and each time the other one has moved
    Docking(QWidget* over, std::function<void()> place);

    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return on_; }
    /// Where a window of that least size and that height belongs: below the other one, or over its lower part
    /// where the screen ends.
    [[nodiscard]] QRect place(QSize least, int height) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> over_;
    std::function<void()> place_;
    bool on_ = false;
};

} // namespace velmora
