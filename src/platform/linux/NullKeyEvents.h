#pragma once

#include "KeyEvents.h"

/// For sessions that do not let programs send keys.
class NullKeyEvents : public KeyEvents
{
public:
    Outcome sendCopy() override { return Outcome::notSent; }
};
