#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// The windows on the user's screen.
class WindowList
{
public:
    struct Window
    {
        std::uint32_t id = 0;
        /// 0 for the ordinary windows of applications; others lie above (docks, notifications,
        /// whatever stays on top) or below them (the desktop).
        int layer = 0;
        std::optional<pid_t> owner; // the process, where the window tells
        double opacity = 1;         // from 0, invisible, to 1
        double width = 0;           // points, without the title bar and shadows
        double height = 0;          // points
    };

    virtual ~WindowList() = default;

    /// The windows that are on screen, the frontmost first, also those that others cover; neither
    /// minimised ones nor those of other workspaces. Empty where the system does not tell. Blocks
    /// for milliseconds, any thread, throws nothing but std::bad_alloc.
    virtual std::vector<Window> windows() = 0;

    /// The system's list; one that is always empty where there is none.
    static std::unique_ptr<WindowList> create();

protected:
    WindowList() = default;
    WindowList(const WindowList&) = default;
    WindowList& operator=(const WindowList&) = default;
};
