#pragma once

#include "Interface.h"

#include <functional>
#include <memory>

/// Notices clicks of the left or right mouse button outside of this process's windows. Clicks on
/// what only helps to write in these windows do not count, such as the candidates of an input
/// method or an on-screen keyboard. Nor does a press that becomes a drag. Main thread only.
class OutsideClicks : public Interface
{
public:
    /// Ignores what is pressed from now on, until resume().
    virtual void pause() = 0;
    virtual void resume() = 0;

    /// From now on `clicked` is not called for a button that was pressed before, whether that is
    /// still down or has been released since.
    virtual void forget() = 0;

    /// The event loop will call `clicked` when the button is released. It is never called if the
    /// session does not let programs know about clicks on other windows.
    static std::unique_ptr<OutsideClicks> create(std::function<void()> clicked);
};
