// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/ControlPainter.h"

#include <QStyleOption>

namespace velmora {

/// What a style's option says of its control.
[[nodiscard]] inline ControlState stateOf(const QStyleOption& option) {
    const QStyle::State state = option.state;
    const bool enabled = state.testFlag(QStyle::State_Enabled);
    return {.enabled = enabled,
            .hot = enabled && state.testFlag(QStyle::State_MouseOver),
            .pressed = enabled && state.testFlag(QStyle::State_Sunken),
            .checked = state.testFlag(QStyle::State_On)};
}

/// The state of one part of a control: hot and pressed only if it is the part under the mouse.
[[nodiscard]] inline ControlState stateOf(const QStyleOptionComplex& option, QStyle::SubControl part) {
    ControlState state = stateOf(option);
    const bool active = option.activeSubControls.testFlag(part);
    state.hot = state.hot && active;
    state.pressed = state.pressed && active;
    state.checked = false;
    return state;
}

} // namespace velmora
