// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QPainter;

namespace velmora {

/// A channel's colour, 16 by 16.
void paintChip(QPainter& painter, QPointF corner, int channel);
/// A channel's square, 20 by 20 unless it is resized, with its number.
class ChannelSquare : public QWidget {
public:
    ChannelSquare(int channel, QWidget* parent);
    void setChannel(int channel);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int channel_;
};

} // namespace velmora
