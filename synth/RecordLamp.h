// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

namespace velmora {

/// `Label8`: "ON" on green while a recording goes on, else "OFF" on red.
class RecordLamp : public QWidget {
public:
    explicit RecordLamp(QWidget* parent);

    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return on_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool on_ = false;
};

} // namespace velmora
