// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/KeymapInUse.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <QGuiApplication>

#include <xkbcommon/xkbcommon-x11.h>

namespace velmora {

namespace {
struct XkbLibrary : LateLibrary {
    XkbLibrary() : LateLibrary(kXkbLibrary) {}
    VELMORA_LATE_CALL(xkb_state_serialize_layout);
    VELMORA_LATE_CALL(xkb_state_unref);
};

struct XkbX11Library : LateLibrary {
    XkbX11Library() : LateLibrary(kXkbX11Library) {}
    VELMORA_LATE_CALL(xkb_x11_get_core_keyboard_device_id);
    VELMORA_LATE_CALL(xkb_x11_keymap_new_from_device);
    VELMORA_LATE_CALL(xkb_x11_setup_xkb_extension);
    VELMORA_LATE_CALL(xkb_x11_state_new_from_device);
};

const XkbLibrary& xkb() {
    static const XkbLibrary library;
    return library;
}
const XkbX11Library& x11() {
    static const XkbX11Library library;
    return library;
}
} // namespace

std::optional<Keymap> keymapOfServer(xcb_connection_t* connection) {
    if (!xkb().complete() || !x11().complete())
        return std::nullopt;
    if (!x11().xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return std::nullopt;
    const int device = x11().xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0)
        return std::nullopt;
    const auto make = [&](xkb_context* context) {
        Keymap::Made made{.keymap = x11().xkb_x11_keymap_new_from_device(context, connection, device,
                                                                         XKB_KEYMAP_COMPILE_NO_FLAGS)};
        if (made.keymap == nullptr)
            return made;
        if (xkb_state* state = x11().xkb_x11_state_new_from_device(made.keymap, connection, device)) {
            made.group = xkb().xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE);
            xkb().xkb_state_unref(state);
        }
        return made;
    };
    return Keymap::madeBy(make);
}

std::optional<Keymap> keymapInUse() {
#if QT_CONFIG(xcb)
    // Platforms without a server may have the interface, and no connection in it.
    const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native && native->connection())
        if (auto keymap = keymapOfServer(native->connection()))
            return keymap;
#endif
    return Keymap::of(KeymapNames::ofSystem());
}

} // namespace velmora
