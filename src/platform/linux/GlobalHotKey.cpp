#include "GlobalHotKey.h"

#include "DesktopKind.h"
#include "NullGlobalHotKey.h"
#include "X11GlobalHotKey.h"

#include <utility>

std::unique_ptr<GlobalHotKey> GlobalHotKey::create(std::function<void()> pressed)
{
    auto x11 = DesktopKind::isX11() ? X11GlobalHotKey::create(std::move(pressed)) : nullptr;
    if (x11)
        return x11;
    return std::make_unique<NullGlobalHotKey>();
}
