#include "OutsideClicks.h"

#include "DesktopKind.h"
#include "NullOutsideClicks.h"
#include "X11OutsideClicks.h"

#include <utility>

std::unique_ptr<OutsideClicks> OutsideClicks::create(std::function<void()> clicked)
{
    auto x11 = DesktopKind::isX11() ? X11OutsideClicks::create(std::move(clicked)) : nullptr;
    if (x11)
        return x11;
    return std::make_unique<NullOutsideClicks>();
}
