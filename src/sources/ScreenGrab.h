#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

class ScreenPermission;
class Screenshot;
class WindowList;

/// Captures the screen and reads the text on it.
namespace ScreenGrab {

enum class Kind {
    window, // the frontmost ordinary window of another application
    screen,
    region // a rectangle that the user drags out
};

/// What the text of such a capture is called.
std::string_view labelOf(Kind kind);

/// The ports that a capture uses; not owned.
struct Tools
{
    WindowList& windowList;
    Screenshot& screenshot;
    ScreenPermission& permission;
    /// The text in an image file. Throws if it cannot be had.
    std::function<std::string(const std::filesystem::path&)> recognize;
};

/// The id of the window that a capture of `Kind::window` would take, nothing if there is none. Any
/// thread.
std::optional<std::uint32_t> frontWindowID();
std::optional<std::uint32_t> frontWindowID(WindowList& windowList);

/// Takes a picture and returns the text in it, which may be empty. Throws AppError if there is no
/// picture, and what Screenshot and OCR throw. The picture never has a name in any folder. Blocks:
/// for seconds with a full page, and while the user selects. Any thread.
std::string captureText(Kind kind);
std::string captureText(Kind kind, const Tools& tools);

/// Like captureText(kind), with `screenshot` in place of the system's own. `taken` is called once
/// the picture is there, before it is read.
std::string captureText(Kind kind, Screenshot& screenshot, const std::function<void()>& taken);

} // namespace ScreenGrab
