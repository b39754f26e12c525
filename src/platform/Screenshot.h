#pragma once

#include "FileDescriptor.h"
#include "Interface.h"

#include <cstdint>
#include <memory>
#include <optional>

/// Takes pictures of the user's screen, as PNG files that have no name. However the process ends,
/// nothing is left of them.
///
/// Each `take` blocks, may be called from any thread and returns the file, or nothing. Each throws
/// std::runtime_error with a sentence for the user if a picture was taken but could not be written.
class Screenshot : public Interface
{
public:
    /// All monitors, without the pointer. Nothing if the system refuses.
    virtual std::optional<FileDescriptor> takeScreen() = 0;

    /// The window that WindowList knows as `id`, without its title bar and shadow. Nothing also if
    /// the window is gone.
    virtual std::optional<FileDescriptor> takeWindow(std::uint32_t id) = 0;

    /// Lets the user drag out a rectangle, and returns it as the screen was at the time of the
    /// call. Nothing if the user cancels; nothing, at once, while another choice is under way.
    /// The size of the rectangle is shown only in a process with a QGuiApplication.
    virtual std::optional<FileDescriptor> takeRegion() = 0;

    /// Cancels the choice that this object waits for. If none is under way, cancels the next one.
    /// Any thread.
    virtual void cancelRegion() = 0;

    /// The system's screenshots. If there is no way to take pictures, an object that always returns
    /// nothing.
    static std::unique_ptr<Screenshot> create();
};
