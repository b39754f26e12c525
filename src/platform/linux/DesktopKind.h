#pragma once

#include <QtGlobal>

/// Tells what kind of desktop the process runs on. That decides the back ends of the ports.
namespace DesktopKind {

/// Whether an X server shows the desktop. On Wayland there may be an X server too, but it knows
/// only some of the windows and nothing of what the others show. Any thread.
inline bool isX11()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace DesktopKind
