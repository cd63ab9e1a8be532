// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QLineEdit>

#include <functional>

namespace velmora {

/// The name of a picked instrument, with the mark of a list that opens. A click opens the picker; so does
/// Enter, Space, F4 or Alt with the down arrow.
class InstrumentField : public QLineEdit {
public:
    explicit InstrumentField(QWidget* parent);

    /// The picker is wanted; the second click of a double click asks once more.
    std::function<void()> onOpen;

    /// Shows the beginning of the name, however long it is.
    void showName(const QString& name);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void open() const;

    bool pressed_ = false;
};

} // namespace velmora
