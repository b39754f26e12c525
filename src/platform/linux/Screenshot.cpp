#include "Screenshot.h"

#include "DesktopKind.h"
#include "NullScreenshot.h"
#include "X11Screenshot.h"

std::unique_ptr<Screenshot> Screenshot::create()
{
    if (DesktopKind::isX11())
        return std::make_unique<X11Screenshot>();
    return std::make_unique<NullScreenshot>();
}
