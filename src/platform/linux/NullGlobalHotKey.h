#pragma once

#include "GlobalHotKey.h"

/// For sessions that give programs no hotkeys.
class NullGlobalHotKey : public GlobalHotKey
{
public:
    bool isGranted() const override { return false; }
};
