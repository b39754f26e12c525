#pragma once

#include <functional>
#include <memory>

/// Clicks of the left and the right mouse button anywhere but on this process's windows, and but on
/// what only helps to write in them: the candidates of an input method, an on-screen keyboard. A
/// press that becomes a drag is no click. Main thread only.
class OutsideClicks
{
public:
    virtual ~OutsideClicks() = default;

    /// What is pressed from now on is not told, until `resume`.
    virtual void pause() = 0;
    virtual void resume() = 0;

    /// Buttons that are down now, or have been released without it having been told, come to no
    /// click.
    virtual void forget() = 0;

    /// Has `clicked` called by the event loop when the button is released; never where the session
    /// lets no program know.
    static std::unique_ptr<OutsideClicks> create(std::function<void()> clicked);

protected:
    OutsideClicks() = default;
    OutsideClicks(const OutsideClicks&) = default;
    OutsideClicks& operator=(const OutsideClicks&) = default;
};
