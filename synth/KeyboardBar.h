// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeyboardControls.h"

#include <QString>
#include <QWidget>

#include <functional>

class QLabel;

namespace velmora {

class ReadOut;
struct SynthParts;

/// A slider of the keyboard between its caption and its read-out. A right click brings it to its rest, and
/// the tip over it says the value under the mouse.
class KeyboardBar : public QWidget {
public:
    /// @param parts outlive the bar
    KeyboardBar(const SynthParts& parts, KeyboardSlider slider, QWidget* parent);

    /// The widths of what stands beside the slider, which takes the rest.
    void setSides(int caption, int readOut);
    /// Shows what the keyboard stands on; a pointer in the user's hand stays where it is.
    void refresh();
    /// Words in place of the value, until the slider is moved.
    void showWords(const QString& words);

    /// The value was set by the user: also by a right click, whose end the second call is.
    std::function<void(double value)> onValue;
    std::function<void()> onRelease;

private:
    class Bar;

    void drag(int tick);
    void rightClick();
    [[nodiscard]] QString readOut() const;
    void resizeEvent(QResizeEvent* event) override;

    const SynthParts& parts_;
    KeyboardSlider slider_;
    QLabel* caption_;
    Bar* bar_;
    ReadOut* value_;
    QString words_;
    int captionWidth_ = 0;
    int readOutWidth_ = 0;
};

} // namespace velmora
