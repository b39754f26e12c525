#pragma once

#include <cstdlib>

/// Tells what kind of desktop the process runs on. That decides the back ends of the ports.
namespace DesktopKind {

/// Whether an X server shows the desktop. On Wayland there may be an X server too, but it knows
/// only some of the windows and nothing of what the others show. Any thread.
inline bool isX11()
{
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    return isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY");
}

} // namespace DesktopKind
