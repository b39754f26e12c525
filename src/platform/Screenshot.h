#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <memory>
#include <optional>

/// Pictures of the user's screen, as PNG files that have no name: nothing of them is left, however
/// the process ends.
///
/// Each `take` blocks, may be called from any thread and returns the file, or nothing. Each throws
/// std::runtime_error with a sentence for the user when there was a picture that could not be
/// written.
class Screenshot
{
public:
    virtual ~Screenshot() = default;

    /// All monitors, without the pointer. Nothing where the system refuses.
    virtual std::optional<FileDescriptor> takeScreen() = 0;

    /// The window that WindowList knows as `id`, without title bar and shadow. Nothing also when it
    /// is gone.
    virtual std::optional<FileDescriptor> takeWindow(std::uint32_t id) = 0;

    /// The rectangle that the user drags out, of the screen as it was at the call. Nothing when the
    /// user cancels, and at once while another selection is under way. Shows its size only in a
    /// process with a QGuiApplication.
    virtual std::optional<FileDescriptor> takeSelection() = 0;

    /// Cancels the selection of this object that is under way, else the next one. Any thread.
    virtual void cancelSelection() = 0;

    /// The system's way; one that always refuses where there is none.
    static std::unique_ptr<Screenshot> create();

protected:
    Screenshot() = default;
    Screenshot(const Screenshot&) = default;
    Screenshot& operator=(const Screenshot&) = default;
};
