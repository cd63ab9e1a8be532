// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Compositor.h"

#include <QGuiApplication>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#endif

namespace velmora {

namespace {

#if QT_CONFIG(xcb)
struct Freed {
    void operator()(void* reply) const { std::free(reply); }
};

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
    const auto asked = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> atom(
        xcb_intern_atom_reply(connection, asked, nullptr));
    return atom ? atom->atom : XCB_NONE;
}

/// A compositor says that it runs by owning the selection of its screen; Qt's windows stand on the first.
bool selectionIsOwned(xcb_connection_t* connection) {
    static const xcb_atom_t kSelection = atomOf(connection, "_NET_WM_CM_S0"); // as long as the server runs
    if (kSelection == XCB_NONE)
        return false;
    const auto ownerAsked = xcb_get_selection_owner(connection, kSelection);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Freed> owner(
        xcb_get_selection_owner_reply(connection, ownerAsked, nullptr));
    return owner && owner->owner != XCB_NONE;
}
#endif

} // namespace

bool windowsShineThrough() {
#if QT_CONFIG(xcb)
    // Platforms without a server may have the interface, and no connection in it.
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 && x11->connection())
        return selectionIsOwned(x11->connection());
#endif
    return true;
}

} // namespace velmora
