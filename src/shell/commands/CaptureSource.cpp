#include "CaptureSource.h"

#include "AppError.h"
#include "Interrupt.h"
#include "QtApplication.h"
#include "Screenshot.h"
#include "WhiteSpace.h"

#include <QGuiApplication>

#include <optional>
#include <string>

namespace CaptureSource {

static std::string capture(ScreenGrab::Kind kind, Screenshot& screenshot)
{
    QtArguments arguments;
    std::optional<QGuiApplication> application;
    if (kind == ScreenGrab::Kind::region) {
        // For the fonts in which the selection shows its size. It needs no windows.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application.emplace(arguments.count, arguments.values);
    }
    return ScreenGrab::captureText(kind, screenshot, [] {});
}

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
