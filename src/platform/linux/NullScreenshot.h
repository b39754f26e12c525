#pragma once

#include "Screenshot.h"

/// For sessions in which pictures of the screen cannot be taken.
class NullScreenshot : public Screenshot
{
public:
    std::optional<FileDescriptor> takeScreen() override { return std::nullopt; }
    std::optional<FileDescriptor> takeWindow(std::uint32_t) override { return std::nullopt; }
    std::optional<FileDescriptor> takeSelection() override { return std::nullopt; }
    void cancelSelection() override {}
};
