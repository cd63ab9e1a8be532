// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "tableau/FormLayout.h"

#include <QWidget>

#include <functional>

namespace velmora {

class ExToolTip;
struct Appearance;
struct Score;

/// The squares `Label8`, a colour and a number a channel, with a ring round the active one and a bar of
/// `LblActiveChannel` under those in use.
class ChannelStrip : public QWidget {
public:
    ChannelStrip(const Appearance& look, ExToolTip& tips, QWidget* parent);

    /// Called with the channel, 0 to 8 and 10 to 12, of a square that was pressed with the left button.
    std::function<void(int)> Label8_Click;
    /// Called with the same of a square that was pressed with the right button.
    std::function<void(int)> onRightPress;

    /// Marks the active channel, those in use and those that are muted.
    void show(const Score& score);
    /// The square itself; null for a channel that has none.
    [[nodiscard]] QWidget* square(int channel) const;
    void layOut(FormWidth width);

private:
    class Square;
    PerChannel<Square*, 13> squares_;
};

} // namespace velmora
