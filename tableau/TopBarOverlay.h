// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <array>
#include <vector>

namespace velmora {

class ExToolTip;
struct Appearance;

/// The strip of read-outs. What has no room is cut with an ellipsis, and whole in its tip.
class TopBarOverlay : public QWidget {
public:
    TopBarOverlay(const Appearance& look, ExToolTip& tips, QWidget* parent);

    /// Which read-out; in their order from the left.
    enum Field { LblNote, LblNoteName, Label7, LblVol, LblInst, LblTrk, LblNumnotes };
    void setField(Field field, const QString& text);
    [[nodiscard]] QString field(Field field) const;
    /// A channel: its colour, and the number by which it is told.
    void showTrack(int channel, const QString& number);

    void layOut(FormWidth width);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class ReadOut;
    static constexpr int kFields = 7;

    [[nodiscard]] std::array<int, LblNumnotes> roomsOfValues() const;

    const Appearance& look_;
    ExToolTip& tips_;
    std::array<ReadOut*, kFields> values_{};
    std::array<int, kFields> captionAt_{};
    std::vector<int> rules_;
    FormWidth width_ = FormWidth::Full;
    int track_ = 0;
};

} // namespace velmora
