#pragma once

#include "X11Connection.h"

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/// The application whose window has the keyboard on an X11 desktop.
struct FrontApplication
{
    xcb_window_t window;
    pid_t process;                  // as the application says; 0 if it does not
    std::vector<std::string> names; // in lower case: of the window's class, and of the process

    /// Finds it. Nothing if there is none, as on an empty desktop.
    static std::optional<FrontApplication> find(X11Connection& connection,
                                                X11Connection::Deadline deadline);

    /// Whether it is a terminal, where the shortcut for "copy" could end the program that runs in
    /// it.
    bool isTerminal() const;

    /// Whether a click with Shift held is as one without in this terminal, rather than extend what
    /// is selected.
    bool ignoresShift() const;
};
