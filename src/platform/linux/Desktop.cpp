#include "Desktop.h"

#include "DesktopKind.h"
#include "X11Connection.h"

namespace Desktop {

bool isAvailable()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || X11Connection::open() != nullptr;
}

bool isComposited()
{
    if (!DesktopKind::isX11())
        return true; // Wayland always composites
    const auto connection = X11Connection::open();
    if (!connection)
        return false;
    const xcb_atom_t manager = connection->atom("_NET_WM_CM_S0");
    const auto owner = connection->reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection->get(), manager));
    return owner && owner->owner != XCB_NONE;
}

} // namespace Desktop
