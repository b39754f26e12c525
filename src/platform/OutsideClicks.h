#pragma once

#include <functional>
#include <memory>

/// Presses of the left and the right mouse button anywhere but on this process's windows. Main
/// thread only.
class OutsideClicks
{
public:
    virtual ~OutsideClicks() = default;

    /// Presses from now on are not told, until `resume`.
    virtual void pause() = 0;
    virtual void resume() = 0;

    /// Has `pressed` called by the event loop upon each; never where the session lets no program
    /// know.
    static std::unique_ptr<OutsideClicks> create(std::function<void()> pressed);

protected:
    OutsideClicks() = default;
    OutsideClicks(const OutsideClicks&) = default;
    OutsideClicks& operator=(const OutsideClicks&) = default;
};
