#pragma once

#include "FileDescriptor.h"
#include "Screenshot.h"

/// Reads the pixels from the X server, each time over a connection of its own.
class X11Screenshot : public Screenshot
{
public:
    /// Throws std::system_error for want of a descriptor.
    X11Screenshot();

    bool takeScreen(const std::filesystem::path& file) override;
    bool takeWindow(std::uint32_t id, const std::filesystem::path& file) override;
    bool takeSelection(const std::filesystem::path& file) override;
    void cancelSelection() override;

private:
    FileDescriptor m_cancel; // counts the wishes to cancel
};
