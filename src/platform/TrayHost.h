#pragma once

#include <functional>
#include <memory>

/// The panel or dock that shows the icons of programs. It may be there from the start, come late,
/// go and come back, or never be there. Main thread only.
class TrayHost
{
public:
    virtual ~TrayHost() = default;

    /// Has `came` called by the event loop for each that is there or comes.
    static std::unique_ptr<TrayHost> create(const std::function<void()>& came);

protected:
    TrayHost() = default;
    TrayHost(const TrayHost&) = default;
    TrayHost& operator=(const TrayHost&) = default;
};
