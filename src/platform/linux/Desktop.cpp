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
    return connection &&
           connection->selectionOwner(connection->atom("_NET_WM_CM_S0")).value_or(XCB_NONE) !=
               XCB_NONE;
}

} // namespace Desktop
