#pragma once

#include "CaptureCurtain.h"
#include "Screenshot.h"

/// Pictures without the popover, which goes away for those that would show it.
class CurtainedScreenshot : public Screenshot
{
public:
    /// Requires: both outlive this.
    CurtainedScreenshot(Screenshot& screenshot, CaptureCurtain& curtain)
        : m_screenshot(screenshot), m_curtain(curtain)
    {}

    bool takeScreen(const std::filesystem::path& file) override
    {
        m_curtain.draw();
        return m_screenshot.takeScreen(file);
    }

    bool takeWindow(std::uint32_t id, const std::filesystem::path& file) override
    {
        m_curtain.draw(id);
        return m_screenshot.takeWindow(id, file);
    }

    bool takeSelection(const std::filesystem::path& file) override
    {
        m_curtain.draw();
        return m_screenshot.takeSelection(file);
    }

    void cancelSelection() override { m_screenshot.cancelSelection(); }

private:
    Screenshot& m_screenshot;
    CaptureCurtain& m_curtain;
};
