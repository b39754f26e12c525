#pragma once

#include "WindowList.h"

/// The windows that the window manager lists by the conventions of freedesktop.org (EWMH).
class X11WindowList : public WindowList
{
public:
    std::vector<Window> windows() override;
};
