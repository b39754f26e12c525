#pragma once

#include "WindowList.h"

/// For sessions that do not tell programs about each other's windows.
class NullWindowList : public WindowList
{
public:
    std::vector<Window> windows() override { return {}; }
};
