#pragma once

#include <memory>

/// The user's permission to take pictures of what other applications show.
class ScreenPermission
{
public:
    virtual ~ScreenPermission() = default;

    /// Whether it is given, without asking. Any thread.
    virtual bool isGranted() = 0;

    /// Asks the user where the system provides for it and they were not asked before, and returns
    /// whether it is given now. Blocks, any thread.
    virtual bool request() = 0;

    /// The system's permission; never given where there is no way to take pictures.
    static std::unique_ptr<ScreenPermission> create();

protected:
    ScreenPermission() = default;
    ScreenPermission(const ScreenPermission&) = default;
    ScreenPermission& operator=(const ScreenPermission&) = default;
};
