#include "WindowList.h"

#include "DesktopKind.h"
#include "NullWindowList.h"
#include "X11WindowList.h"

std::unique_ptr<WindowList> WindowList::create()
{
    if (DesktopKind::isX11())
        return std::make_unique<X11WindowList>();
    return std::make_unique<NullWindowList>();
}
