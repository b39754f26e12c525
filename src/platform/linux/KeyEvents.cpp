#include "KeyEvents.h"

#include "DesktopKind.h"
#include "NullKeyEvents.h"
#include "X11KeyEvents.h"

std::unique_ptr<KeyEvents> KeyEvents::create()
{
    auto x11 = DesktopKind::isX11() ? X11KeyEvents::create() : nullptr;
    if (x11)
        return x11;
    return std::make_unique<NullKeyEvents>();
}
