#include "Pasteboard.h"

#include "DesktopKind.h"
#include "NullPasteboard.h"
#include "X11Pasteboard.h"

std::unique_ptr<Pasteboard> Pasteboard::create()
{
    auto x11 = DesktopKind::isX11() ? X11Pasteboard::create() : nullptr;
    if (x11)
        return x11;
    return std::make_unique<NullPasteboard>();
}
