// SPDX-License-Identifier: GPL-2.0-or-later
// The controls of several parts.
#include "shell/SkinStyle.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"
#include "shell/StyleState.h"

#include <QtWidgets>

namespace velmora {

namespace {
constexpr int kSpinWidth = 17;
constexpr int kArrowWidth = 20;
constexpr int kScrollArrow = 20; ///< along the bar
constexpr int kLeastThumb = 28;
constexpr int kGroupPadding = 12;
constexpr int kGroupHeading = 32;

/// The arrows stand at the ends, and the thumb shows which part of the whole is seen.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const bool across = bar.orientation == Qt::Horizontal;
    const int length = across ? bar.rect.width() : bar.rect.height();
    const int arrow = std::min(kScrollArrow, length / 2);
    const int rail = length - 2 * arrow;
    const qint64 range = qint64{bar.maximum} - bar.minimum;
    const qint64 shown = std::max(1, bar.pageStep);
    const int thumb = range <= 0 ? rail
                                 : std::clamp(static_cast<int>(rail * shown / (range + shown)),
                                              std::min(kLeastThumb, rail), rail);
    const int place = arrow + QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                              rail - thumb, bar.upsideDown);
    const auto along = [&](int from, int to) {
        return across ? QRect(bar.rect.left() + from, bar.rect.top(), to - from, bar.rect.height())
                      : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), to - from);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSubLine:
        return along(0, arrow);
    case QStyle::SC_ScrollBarAddLine:
        return along(length - arrow, length);
    case QStyle::SC_ScrollBarSubPage:
        return along(arrow, place);
    case QStyle::SC_ScrollBarAddPage:
        return along(place + thumb, length - arrow);
    case QStyle::SC_ScrollBarGroove:
        return along(arrow, length - arrow);
    case QStyle::SC_ScrollBarSlider:
        return along(place, place + thumb);
    default:
        return {};
    }
}
} // namespace

void SkinStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    switch (control) {
    case CC_ScrollBar:
        drawScrollBar(option, painter, widget);
        return;
    case CC_Slider:
        drawSlider(option, painter, widget);
        return;
    case CC_SpinBox:
        drawSpinBox(option, painter, widget);
        return;
    case CC_ComboBox:
        drawComboBox(option, painter, widget);
        return;
    case CC_GroupBox:
        if (const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
            group && !group->subControls.testFlag(SC_GroupBoxCheckBox)) {
            paintGroup(*painter, look_.skin(), group->rect);
            if (!group->text.isEmpty())
                paintGroupHeading(*painter, look_.skin(), group->rect, group->text);
            return;
        }
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    default:
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void SkinStyle::drawScrollBar(const QStyleOptionComplex* option, QPainter* painter,
                              const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (!bar)
        return;
    const Skin& skin = look_.skin();
    const bool horizontal = bar->orientation == Qt::Horizontal;
    const bool scrolls = bar->maximum > bar->minimum;
    paintScrollRail(*painter, skin, bar->rect);
    const auto part = [&](SubControl which) {
        return QRectF(subControlRect(CC_ScrollBar, option, which, widget));
    };
    const auto arrow = [&](SubControl which, Direction direction) {
        ControlState state = stateOf(*option, which);
        state.enabled = state.enabled && scrolls;
        paintSmallFace(*painter, skin, part(which), state);
        paintChevron(*painter, part(which), direction, inkOn(skin, state));
    };
    arrow(SC_ScrollBarSubLine, horizontal ? Direction::Left : Direction::Up);
    arrow(SC_ScrollBarAddLine, horizontal ? Direction::Right : Direction::Down);
    if (scrolls && bar->state.testFlag(State_Enabled))
        paintThumb(*painter, skin, part(SC_ScrollBarSlider), horizontal,
                   stateOf(*option, SC_ScrollBarSlider));
}

void SkinStyle::drawSlider(const QStyleOptionComplex* option, QPainter* painter,
                           const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (!slider)
        return;
    const bool horizontal = slider->orientation == Qt::Horizontal;
    const QRectF pointer = subControlRect(CC_Slider, option, SC_SliderHandle, widget);
    const QRectF all = slider->rect;
    const ControlState state{.enabled = slider->state.testFlag(State_Enabled)};
    if (horizontal)
        paintGroove(*painter, look_.skin(), all, true, all.left() + 1, pointer.center().x(), state);
    else
        paintGroove(*painter, look_.skin(), all, false, pointer.center().y(), all.bottom() - 1, state);
    paintPointer(*painter, look_.skin(), pointer, horizontal, state);
}

void SkinStyle::drawSpinBox(const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const {
    const auto* box = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
    if (!box)
        return;
    const Skin& skin = look_.skin();
    paintField(*painter, skin, box->rect, box->state.testFlag(State_Enabled));
    const auto step = [&](SubControl which, Direction direction, QAbstractSpinBox::StepEnabledFlag flag) {
        const QRectF rect = subControlRect(CC_SpinBox, option, which, widget);
        ControlState state = stateOf(*option, which);
        state.enabled = state.enabled && box->stepEnabled.testFlag(flag);
        paintSmallFace(*painter, skin, rect, state, false);
        paintTriangle(*painter, rect, direction, inkOn(skin, state));
    };
    step(SC_SpinBoxUp, Direction::Up, QAbstractSpinBox::StepUpEnabled);
    step(SC_SpinBoxDown, Direction::Down, QAbstractSpinBox::StepDownEnabled);
    const QRectF up = subControlRect(CC_SpinBox, option, SC_SpinBoxUp, widget);
    verticalLine(*painter, up.left() - 1, box->rect.top() + 1, box->rect.height() - 2,
                 toQColor(skin.fieldEdge));
    horizontalLine(*painter, up.left(), up.bottom(), up.width(), toQColor(skin.fieldEdge));
}

void SkinStyle::drawComboBox(const QStyleOptionComplex* option, QPainter* painter,
                             const QWidget* widget) const {
    const Skin& skin = look_.skin();
    paintField(*painter, skin, option->rect, option->state.testFlag(State_Enabled));
    const QRectF arrow = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
    const ControlState state = stateOf(*option);
    paintSmallFace(*painter, skin, arrow, state);
    paintChevron(*painter, arrow, Direction::Down, inkOn(skin, state));
}

QRect SkinStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
    const QRect all = option->rect;
    const int spin = all.right() - kSpinWidth + 1;
    const int half = all.height() / 2;
    const auto mirrored = [option](const QRect& rect) {
        return visualRect(option->direction, option->rect, rect);
    };
    if (control == CC_SpinBox) {
        if (part == SC_SpinBoxUp)
            return mirrored({spin, all.top() + 1, kSpinWidth - 1, half - 1});
        if (part == SC_SpinBoxDown)
            return mirrored({spin, all.top() + half, kSpinWidth - 1, all.height() - half - 1});
        if (part == SC_SpinBoxEditField)
            return mirrored(all.adjusted(4, 1, -kSpinWidth - 2, -1));
        return all;
    }
    if (control == CC_ScrollBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return mirrored(scrollBarPart(*bar, part));
    if (control == CC_GroupBox && part == SC_GroupBoxContents) {
        const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
        return all.adjusted(kGroupPadding, group && !group->text.isEmpty() ? kGroupHeading : kGroupPadding,
                            -kGroupPadding, -kGroupPadding);
    }
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return mirrored({all.right() - kArrowWidth + 1, all.top() + 2, kArrowWidth - 2, all.height() - 4});
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        const int inset = box && box->editable ? 2 : 8; // a line edit keeps 6 of its own
        return mirrored(all.adjusted(inset, 1, -kArrowWidth - 4, -1));
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

} // namespace velmora
