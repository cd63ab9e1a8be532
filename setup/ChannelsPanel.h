// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <QWidget>

#include <functional>

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QLabel;

namespace velmora {

class InstrumentField;
struct Appearance;
struct Desk;

/// The panel "Channels": which channel is the active one, which are hidden, and the picked instruments.
class ChannelsPanel : public QWidget {
public:
    ChannelsPanel(Desk& desk, const Appearance& look, QWidget* parent);

    std::function<void(int channel)> TrackSel_Click;
    std::function<void(int channel, bool hidden)> TrackHide_Click; // as its box now says
    std::function<void()> LblInst_DblClick;

    /// Shows the active channel, the hidden ones, the instruments and the volume.
    void refresh();

    [[nodiscard]] bool isPressed(int channel) const;

private:
    void addChannels(QGroupBox& group, int first, int last, int pitch);
    void addInstruments(QGroupBox& group, const Appearance& look);

    Desk& desk_;
    const Appearance& look_;
    QButtonGroup* channels_;
    PerChannel<QAbstractButton*, kUsedChannels> TrackSel;
    PerChannel<QCheckBox*, kUsedChannels> TrackHide;
    InstrumentField* LblInst1 = nullptr;
    InstrumentField* LblInst2 = nullptr;
    QLabel* Label2 = nullptr;
};

} // namespace velmora
