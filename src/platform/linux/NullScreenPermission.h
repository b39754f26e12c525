#pragma once

#include "ScreenPermission.h"

/// For sessions in which pictures of the screen cannot be taken, and there is nothing to ask for.
class NullScreenPermission : public ScreenPermission
{
public:
    bool isGranted() override { return false; }
    bool request() override { return false; }
};
