// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PianoKeys.h"
#include "synth/KeyLayout.h"

#include <QWidget>

#include <array>
#include <bitset>
#include <functional>
#include <optional>

class QAbstractButton;
class QLineEdit;

namespace velmora {

struct Appearance;
struct KeyScheme;

/// `Picture1`, the key area: it shows the keys with their labels and says what the mouse does on them. A key
/// that changes is painted alone.
///
/// `CmdKey`(0 to 43) are the keys to screen readers, which may press them; `NoteX`(0 to 43) the fields over
/// the labels while these are edited.
class KeyArea : public QWidget {
public:
    KeyArea(const Appearance& look, QWidget* parent);

    /// The left button went down on a key, or slid onto it. @param height how far down the key, 0 to 1
    std::function<void(int key, double height)> onPress;
    /// It went up, or slid off the key.
    std::function<void()> onRelease;
    /// The mouse moves over the bare background.
    std::function<void()> onBare;
    /// A label was typed.
    std::function<void(int key, const QString& text)> onLabel;

    void showKey(int key, bool sounds);
    /// @param octaveShift of the notes that the keys' names tell
    void showLabels(const KeyScheme& scheme, int octaveShift);
    /// From now on the labels can be typed over, or no longer.
    void setEditing(bool on);

    [[nodiscard]] const KeyLayout& layout() const { return layout_; }
    /// The pixels that change with the key.
    [[nodiscard]] QRect placeOf(int key) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void strike(std::optional<int> key, QPointF at);
    void placeControls();
    void addFields();

    const Appearance& look_;
    KeyLayout layout_;
    std::array<QAbstractButton*, kPianoKeys> CmdKey{};
    std::array<QLineEdit*, kPianoKeys> NoteX{}; ///< made when editing begins first
    std::array<QString, kPianoKeys> labels_;
    std::bitset<kPianoKeys> sounds_;
    int octaveShift_ = 0;
    bool editing_ = false;
    bool pressed_ = false;      ///< the left button is down
    std::optional<int> struck_; ///< what it strikes
};

} // namespace velmora
