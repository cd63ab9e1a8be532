// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QLineEdit>

#include <functional>

namespace velmora {

/// The name of a picked instrument. A double click opens the picker; so does Enter or Space.
class InstrumentField : public QLineEdit {
public:
    explicit InstrumentField(QWidget* parent);

    std::function<void()> onOpen;

    /// Shows the beginning of the name, however long it is.
    void showName(const QString& name);

protected:
    bool event(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace velmora
