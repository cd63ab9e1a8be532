// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>

class QLabel;

namespace velmora {

class ChannelSquare;
class Slider;
struct Appearance;
struct Desk;
struct ShownSound;

/// The panel "Sound ": five sliders for the active channel. What they say of the controllers is sent at once.
class SoundPanel : public QWidget {
public:
    SoundPanel(Desk& desk, const Appearance& look, QWidget* parent);

    /// The volume of the active channel was set.
    std::function<void(std::int16_t value)> lblVolume_Change;

    /// Shows the active channel and the values of its sound.
    void refresh();

private:
    static constexpr std::size_t kEffects = 4;

    void goOn();
    Slider* addRow(const char* bar, const char* caption, QLabel* value, const char* tip, int row);
    void dragEffect(std::size_t effect, int value);
    void dragVolume(int value);
    void show(Slider& slider, QLabel& label, const ShownSound& sound, int middle) const;

    Desk& desk_;
    const Appearance& look_;
    QWidget* group_;
    ChannelSquare* square_;
    Slider* dragging_ = nullptr; ///< that the user is moving
    std::optional<Act> act_;     ///< a drag is one step of undo
    Slider* lblVolume;
    QLabel* Label15;
    QLabel* varies_ = nullptr; ///< what the mark behind a value means
    std::array<Slider*, kEffects> bars_{};
    std::array<QLabel*, kEffects> labels_{};
};

} // namespace velmora
