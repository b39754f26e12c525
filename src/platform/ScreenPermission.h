#pragma once

#include "Interface.h"

#include <memory>

/// The user's permission to take pictures of what other applications show.
class ScreenPermission : public Interface
{
public:
    /// Whether the permission is given. Does not ask the user. Any thread.
    virtual bool isGranted() = 0;

    /// Asks the user, if the system provides for that and they were not asked before. Returns
    /// whether the permission is given now. Blocks; any thread.
    virtual bool request() = 0;

    /// The system's permission. If there is no way to take pictures, one that is never given.
    static std::unique_ptr<ScreenPermission> create();
};
