// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractSpinBox>

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

namespace velmora {

/// A number with two arrows, which takes any text: what the number is to be is for others to say. The arrows
/// bear one name and the text the other.
class NumberField : public QAbstractSpinBox {
public:
    NumberField(const QString& arrows, const QString& text, QWidget* parent);

    /// The largest number that can be typed, which is that of 16 bits otherwise. Nobody is told of a larger
    /// one.
    void setMost(int most) { most_ = most; }
    /// What a blank text stands for, shown greyed: 0 is a blank text then. Blank for a field that shows 0.
    void setBlankText(const QString& greyed);
    /// Shows a number from code, unless the text means it already or is just being typed: nobody is told.
    void showNumber(int shown);

    /// The user has edited the text: the number that it holds, if it fits; or has pressed an arrow.
    std::function<void(int number)> onNumber;
    std::function<void(int steps)> onStep;
    /// What the text stands for: it becomes that once the user has finished with it.
    std::function<int()> number;

    void stepBy(int steps) override;

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;

private:
    void settle();
    [[nodiscard]] std::optional<int> typedNumber() const;
    [[nodiscard]] QString textOf(int shown) const;

    int most_ = std::numeric_limits<std::int16_t>::max();
};

} // namespace velmora
