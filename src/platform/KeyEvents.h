#pragma once

#include <memory>

/// Keys sent in the user's name. An object may be used by any thread, by one at a time; no call
/// takes longer than 100 milliseconds, none throws.
class KeyEvents
{
public:
    enum class Outcome { sent, notSent };

    virtual ~KeyEvents() = default;

    /// Sends the frontmost application the shortcut for "copy". Keys that the user still holds are
    /// released first and stay released. Nothing is sent to a terminal, where the shortcut may
    /// end the running program, nor where no application is in front.
    virtual Outcome sendCopy() = 0;

    /// The keyboard of the session the process runs in; one that sends nothing where there is none.
    static std::unique_ptr<KeyEvents> create();

protected:
    KeyEvents() = default;
    KeyEvents(const KeyEvents&) = default;
    KeyEvents& operator=(const KeyEvents&) = default;
};
