#pragma once

#include "Screenshot.h"

/// Where there is no way to take pictures of the screen.
class NullScreenshot : public Screenshot
{
public:
    bool takeScreen(const std::filesystem::path&) override { return false; }
    bool takeWindow(std::uint32_t, const std::filesystem::path&) override { return false; }
    bool takeSelection(const std::filesystem::path&) override { return false; }
    void cancelSelection() override {}
};
