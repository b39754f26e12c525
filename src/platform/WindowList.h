#pragma once

#include "Interface.h"

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// The windows on the user's screen.
class WindowList : public Interface
{
public:
    struct Window
    {
        std::uint32_t id = 0;
        /// 0 for the ordinary windows of applications. Higher for windows above these (docks,
        /// notifications, whatever stays on top), lower for those below (the desktop).
        int layer = 0;
        std::optional<pid_t> owner; // the process, if the window tells
        double opacity = 1;         // from 0, invisible, to 1
        double width = 0;           // points, without the title bar and shadows
        double height = 0;          // points
    };

    /// The windows that are on screen, the frontmost first. Windows that others cover are among
    /// them, but neither minimised ones nor those on other workspaces. Empty if the system does not
    /// tell. Blocks for milliseconds. Any thread. Throws nothing but std::bad_alloc.
    virtual std::vector<Window> windows() = 0;

    /// The system's list. If it has none, one that is always empty.
    static std::unique_ptr<WindowList> create();
};
