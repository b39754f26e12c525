#include "ScreenPermission.h"

#include "DesktopKind.h"
#include "NullScreenPermission.h"
#include "X11ScreenPermission.h"

std::unique_ptr<ScreenPermission> ScreenPermission::create()
{
    if (DesktopKind::isX11())
        return std::make_unique<X11ScreenPermission>();
    return std::make_unique<NullScreenPermission>();
}
