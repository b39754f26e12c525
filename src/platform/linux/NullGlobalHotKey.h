#pragma once

#include "GlobalHotKey.h"

/// For sessions that let programs have no keys.
class NullGlobalHotKey : public GlobalHotKey
{
public:
    bool isGranted() const override { return false; }
};
