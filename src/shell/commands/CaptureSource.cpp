#include "CaptureSource.h"

#include "AppError.h"
#include "Interrupt.h"
#include "Interrupted.h"
#include "OCR.h"
#include "ScreenPermission.h"
#include "Screenshot.h"
#include "WhiteSpace.h"
#include "WindowList.h"

#include <QGuiApplication>

#include <optional>

namespace CaptureSource {

namespace {

std::string label(ScreenGrab::Kind kind)
{
    switch (kind) {
    case ScreenGrab::Kind::window:
        return "Active window";
    case ScreenGrab::Kind::screen:
        return "Screen";
    case ScreenGrab::Kind::region:
        break;
    }
    return "Selected area";
}

/// Provides the fonts in which the selection shows its size, without any windows.
class Fonts
{
public:
    Fonts()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application.emplace(m_argumentCount, m_arguments);
    }

private:
    int m_argumentCount = 1;
    char m_name[9] = "pithwise";
    char* m_arguments[2] = {m_name, nullptr};
    std::optional<QGuiApplication> m_application;
};

std::string capture(ScreenGrab::Kind kind, Screenshot& screenshot)
{
    const auto windowList = WindowList::create();
    const auto permission = ScreenPermission::create();
    std::optional<Fonts> fonts;
    if (kind == ScreenGrab::Kind::region)
        fonts.emplace();
    return ScreenGrab::captureText(
        kind, {*windowList, screenshot, *permission,
               [](const std::filesystem::path& file) { return OCR::recognize(file); }});
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
        throw AppError("No text found in " + label(kind) + ".");
    return text;
}

} // namespace CaptureSource
