// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractSpinBox>
#include <QLabel>
#include <QLineEdit>

#include <cstdint>
#include <functional>
#include <optional>

class QCheckBox;
class QGroupBox;
class QPainter;

namespace velmora {

struct Appearance;

/// Where a panel of the setup toolbar stands under the title, and how large it is.
inline constexpr QRect kSetupPage{12, 36, 496, 264};

/// A group box with its heading; places in it count from its corner.
[[nodiscard]] QGroupBox* addGroup(QWidget& page, const QString& heading, const QRect& place);
/// The words for a control beside or under them: 12 pixels high where they are read with it, 10 where small.
QLabel* addWords(QWidget& parent, const QString& words, const QRect& place);
QLabel* addSmallWords(QWidget& parent, const QString& words, const QRect& place);
/// A box without words of its own, in the middle of a column.
[[nodiscard]] QCheckBox* addBox(QWidget& parent, const QString& name, QPoint middle);

/// A channel's colour, 16 by 16.
void paintChip(QPainter& painter, QPointF corner, int channel);
/// A channel's square, 20 by 20, with its number.
class ChannelSquare : public QWidget {
public:
    ChannelSquare(int channel, QWidget* parent);
    void setChannel(int channel);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int channel_;
};

/// A value that can't be edited.
class ReadOut : public QLabel {
public:
    ReadOut(const Appearance& look, const QString& name, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
};

/// A number with two arrows, which takes any text: what the number is to be is for others to say. The arrows
/// bear one name and the text the other.
class NumberField : public QAbstractSpinBox {
public:
    NumberField(const QString& arrows, const QString& text, QWidget* parent);

    /// Shows a number from code, unless the text means it already: nobody is told.
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
};

} // namespace velmora
