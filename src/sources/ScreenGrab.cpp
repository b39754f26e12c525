#include "ScreenGrab.h"

#include "AppError.h"
#include "OCR.h"
#include "PlatformWords.h"
#include "ScreenPermission.h"
#include "Screenshot.h"
#include "WindowList.h"

#include <unistd.h>

#include <utility>

namespace ScreenGrab {

namespace {

/// A window of this width or height, or less, has no text worth reading: tool palettes, floating
/// buttons.
constexpr double smallSide = 120; // points

bool isEligible(const WindowList::Window& window)
{
    return window.layer == 0 && window.owner != ::getpid() && window.opacity > 0 &&
           window.width > smallSide && window.height > smallSide;
}

std::optional<FileDescriptor> takeFrontWindow(const Tools& tools)
{
    const std::optional<std::uint32_t> window = frontWindowID(tools.windowList);
    if (!window)
        throw AppError("No window found to capture.");
    return tools.screenshot.takeWindow(*window);
}

/// Takes the picture. Throws AppError if there is none.
FileDescriptor take(Kind kind, const Tools& tools)
{
    if (kind == Kind::region) {
        std::optional<FileDescriptor> selected = tools.screenshot.takeRegion();
        if (!selected)
            throw AppError("Capture cancelled.");
        return *std::move(selected);
    }
    std::optional<FileDescriptor> picture =
        kind == Kind::window ? takeFrontWindow(tools) : tools.screenshot.takeScreen();
    if (!picture)
        throw AppError(tools.permission.isGranted() ? platformWords.captureFailed
                                                    : platformWords.captureRefused);
    return *std::move(picture);
}

} // namespace

std::string_view labelOf(Kind kind)
{
    switch (kind) {
    case Kind::window:
        return "Active window";
    case Kind::screen:
        return "Screen";
    case Kind::region:
        break;
    }
    return "Selected area";
}

std::optional<std::uint32_t> frontWindowID(WindowList& windowList)
{
    for (const WindowList::Window& window : windowList.windows()) {
        if (isEligible(window))
            return window.id;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> frontWindowID()
{
    return frontWindowID(*WindowList::create());
}

std::string captureText(Kind kind, const Tools& tools)
{
    // Tries to capture even if the permission is not given by now, because it may be given in the
    // meantime.
    if (kind != Kind::region && !tools.permission.isGranted())
        tools.permission.request();
    const FileDescriptor picture = take(kind, tools);
    return tools.recognize("/proc/self/fd/" + std::to_string(picture.value()));
}

std::string captureText(Kind kind)
{
    return captureText(kind, *Screenshot::create(), [] {});
}

std::string captureText(Kind kind, Screenshot& screenshot, const std::function<void()>& taken)
{
    const auto windowList = WindowList::create();
    const auto permission = ScreenPermission::create();
    return captureText(
        kind, {*windowList, screenshot, *permission, [&taken](const std::filesystem::path& file) {
                   taken();
                   return OCR::recognize(file);
               }});
}

} // namespace ScreenGrab
