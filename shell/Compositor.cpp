// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Compositor.h"

#include <QGuiApplication>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>

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

/// A compositor says that it runs by owning the selection of its screen; Qt's windows stand on the first.
bool selectionIsOwned(xcb_connection_t* connection) {
    constexpr std::string_view kSelection = "_NET_WM_CM_S0";
    const auto atomAsked = xcb_intern_atom(connection, 0, kSelection.size(), kSelection.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> atom(
        xcb_intern_atom_reply(connection, atomAsked, nullptr));
    if (!atom)
        return false;
    const auto ownerAsked = xcb_get_selection_owner(connection, atom->atom);
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
