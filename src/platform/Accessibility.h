#pragma once

#include "Interface.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

/// What the system tells about the user interfaces of other applications. An object may be used by
/// any thread, but by one at a time. Nothing throws anything but std::bad_alloc.
class Accessibility : public Interface
{
public:
    /// Whether this process may read the contents of other applications and send them keys. The
    /// system may ask the user about it.
    virtual bool isTrusted() = 0;

    /// The text selected in the focused element of the frontmost application, never that of another
    /// application. It is UTF-8 as the application gave it, and may be invalid. Nothing if no text
    /// is selected, or if it cannot be had within `limit`.
    virtual std::optional<std::string> selectedText(std::chrono::milliseconds limit) = 0;

    /// Makes an object for the session that the process runs in. If that session has no such
    /// service, the object is never trusted.
    static std::unique_ptr<Accessibility> create();
};
