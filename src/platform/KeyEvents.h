#pragma once

#include "Interface.h"

#include <memory>

/// Sends keys in the user's name. An object may be used by any thread, but by one at a time. No
/// call takes longer than 100 milliseconds, and none throws.
class KeyEvents : public Interface
{
public:
    enum class Outcome { sent, notSent };

    /// Sends the shortcut for "copy" to the frontmost application. Keys that the user still holds
    /// are released first and stay released. Nothing is sent to a terminal, where the shortcut may
    /// end the running program, and nothing if no application is in front.
    virtual Outcome sendCopy() = 0;

    /// Makes an object for the session that the process runs in. If that session lets programs send
    /// no keys, the object sends none.
    static std::unique_ptr<KeyEvents> create();
};
