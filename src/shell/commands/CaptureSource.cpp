#include "CaptureSource.h"

#include "AppError.h"
#include "Interrupt.h"
#include "Interrupted.h"
#include "QtArguments.h"
#include "Screenshot.h"
#include "WhiteSpace.h"

#include <QGuiApplication>

#include <optional>
#include <string>

namespace CaptureSource {

namespace {

/// Provides the fonts in which the selection shows its size, without any windows.
class Fonts
{
public:
    Fonts()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application.emplace(m_arguments.count, m_arguments.values);
    }

private:
    QtArguments m_arguments;
    std::optional<QGuiApplication> m_application;
};

std::string capture(ScreenGrab::Kind kind, Screenshot& screenshot)
{
    std::optional<Fonts> fonts;
    if (kind == ScreenGrab::Kind::region)
        fonts.emplace();
    return ScreenGrab::captureText(kind, screenshot, [] {});
}

} // namespace

std::string read(ScreenGrab::Kind kind)
{
    const auto screenshot = Screenshot::create();
    // The process does not end at once, so that the overlay is gone first.
    const Interrupt interrupt([&screenshot] { screenshot->cancelRegion(); });
    std::string text;
    try {
        text = capture(kind, *screenshot);
    } catch (...) {
        if (interrupt.exitStatus() == 0)
            throw;
    }
    if (interrupt.exitStatus() != 0)
        throw Interrupted{interrupt.exitStatus()};
    if (WhiteSpace::trimmed(text).empty())
        throw AppError("No text found in " + std::string(ScreenGrab::labelOf(kind)) + ".");
    return text;
}

} // namespace CaptureSource
