#include "Accessibility.h"

#include "DesktopKind.h"
#include "NullAccessibility.h"
#include "X11Accessibility.h"

std::unique_ptr<Accessibility> Accessibility::create()
{
    auto x11 = DesktopKind::isX11() ? X11Accessibility::create() : nullptr;
    if (x11)
        return x11;
    return std::make_unique<NullAccessibility>();
}
