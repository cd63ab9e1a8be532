// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QLabel>

namespace velmora {

struct Appearance;

/// A value that can't be edited.
class ReadOut : public QLabel {
public:
    ReadOut(const Appearance& look, const QString& name, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
};

} // namespace velmora
