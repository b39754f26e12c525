#pragma once

#include "OutsideClicks.h"

/// For sessions where programs do not know what happens outside of their windows.
class NullOutsideClicks : public OutsideClicks
{
public:
    void pause() override {}
    void resume() override {}
    void forget() override {}
};
