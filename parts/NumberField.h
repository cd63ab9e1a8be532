// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractSpinBox>

#include <cstdint>
#include <functional>

namespace velmora {

/// A number with two arrows, which takes any text: what the number is to be is for others to say. The arrows
/// bear one name and the text the other.
class NumberField : public QAbstractSpinBox {
public:
    NumberField(const QString& arrows, const QString& text, QWidget* parent);

    /// What a blank text stands for, shown greyed: 0 is a blank text then. Blank for a field that shows 0.
    void setBlankText(const QString& greyed);
    /// Shows a number from code, unless the text means it already or is just being typed: nobody is told.
    void showNumber(int shown);

    /// The user has edited the text: the number that it holds, if it fits; or has pressed an arrow.
    std::function<void(std::int16_t number)> onNumber;
    std::function<void(int steps)> onStep;
    /// What the text stands for: it becomes that once the user has finished with it.
    std::function<int()> number;

    void stepBy(int steps) override;

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;

private:
    void settle();
    [[nodiscard]] QString textOf(int shown) const;
};

} // namespace velmora
