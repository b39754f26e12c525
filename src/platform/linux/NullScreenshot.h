#pragma once

#include "Screenshot.h"

/// Where there is no way to take pictures of the screen.
class NullScreenshot : public Screenshot
{
public:
    std::optional<FileDescriptor> takeScreen() override { return std::nullopt; }
    std::optional<FileDescriptor> takeWindow(std::uint32_t) override { return std::nullopt; }
    std::optional<FileDescriptor> takeSelection() override { return std::nullopt; }
    void cancelSelection() override {}
};
