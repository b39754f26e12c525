#pragma once

#include "WindowList.h"

/// Where the desktop shows no program the windows of the others.
class NullWindowList : public WindowList
{
public:
    std::vector<Window> windows() override { return {}; }
};
