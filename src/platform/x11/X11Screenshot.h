#pragma once

#include "Screenshot.h"

/// Reads the pixels from the X server, each time over a connection of its own.
class X11Screenshot : public Screenshot
{
public:
    /// Throws std::system_error if there is no descriptor left.
    X11Screenshot();

    std::optional<FileDescriptor> takeScreen() override;
    std::optional<FileDescriptor> takeWindow(std::uint32_t id) override;
    std::optional<FileDescriptor> takeRegion() override;
    void cancelRegion() override;

private:
    FileDescriptor m_cancel; // counts the wishes to cancel
};
