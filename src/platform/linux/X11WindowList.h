#pragma once

#include "WindowList.h"

/// The windows that the window manager lists, as the conventions of freedesktop.org (EWMH) have it.
class X11WindowList : public WindowList
{
public:
    std::vector<Window> windows() override;
};
