#pragma once

#include "ScreenPermission.h"

/// An X server lets every program see the whole screen.
class X11ScreenPermission : public ScreenPermission
{
public:
    bool isGranted() override { return true; }
    bool request() override { return true; }
};
