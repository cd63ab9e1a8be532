// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QIcon>

#include <cstdint>
#include <string_view>

namespace velmora {

struct Appearance;

/// What an icon stands on, which gives it its colours.
enum class IconGround : std::uint8_t {
    Bar,  ///< a button or the panel
    Field ///< a list of the colour of fields; on a row that is chosen it takes the colour of the row's words
};

/// One of our icons where Qt wants a QIcon: always in the skin of the moment.
/// @param look must outlive the icon
/// @param name of the icon set, and lasting
[[nodiscard]] QIcon skinIcon(const Appearance& look, std::string_view name,
                             IconGround ground = IconGround::Bar);

} // namespace velmora
