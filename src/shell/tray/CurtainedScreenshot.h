#pragma once

#include "CaptureCurtain.h"
#include "Screenshot.h"

/// Takes pictures without the popover, which is hidden for those that would show it.
class CurtainedScreenshot : public Screenshot
{
public:
    /// Requires: `screenshot` and `curtain` outlive this object.
    CurtainedScreenshot(Screenshot& screenshot, CaptureCurtain& curtain)
        : m_screenshot(screenshot), m_curtain(curtain)
    {}

    std::optional<FileDescriptor> takeScreen() override
    {
        m_curtain.draw();
        return m_screenshot.takeScreen();
    }

    std::optional<FileDescriptor> takeWindow(std::uint32_t id) override
    {
        m_curtain.draw(id);
        return m_screenshot.takeWindow(id);
    }

    std::optional<FileDescriptor> takeRegion() override
    {
        m_curtain.draw();
        return m_screenshot.takeRegion();
    }

    void cancelRegion() override { m_screenshot.cancelRegion(); }

private:
    Screenshot& m_screenshot;
    CaptureCurtain& m_curtain;
};
