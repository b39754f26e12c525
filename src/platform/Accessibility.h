#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

/// What the system tells about the user interface of other applications. An object may be used by
/// any thread, by one at a time; nothing throws but for want of memory.
class Accessibility
{
public:
    virtual ~Accessibility() = default;

    /// Whether this process may read other applications' contents and send them keys. The system
    /// may ask the user.
    virtual bool isTrusted() = 0;

    /// The text selected in the focused element of the frontmost application, never that of another
    /// application; UTF-8 as the application gave it, which may be invalid. Nothing where none is
    /// selected or none can be had within `limit`.
    virtual std::optional<std::string> selectedText(std::chrono::milliseconds limit) = 0;

    /// That of the session the process runs in; one that is not trusted where there is none.
    static std::unique_ptr<Accessibility> create();

protected:
    Accessibility() = default;
    Accessibility(const Accessibility&) = default;
    Accessibility& operator=(const Accessibility&) = default;
};
