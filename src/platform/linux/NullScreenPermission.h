#pragma once

#include "ScreenPermission.h"

/// Where there is no way to take pictures of the screen, and so nothing to ask for.
class NullScreenPermission : public ScreenPermission
{
public:
    bool isGranted() override { return false; }
    bool request() override { return false; }
};
