#pragma once

#include "Interface.h"

#include <functional>
#include <memory>

/// Tells when there is a panel or dock that shows the icons of programs. It may be there from the
/// start, come late, go and come back, or never be there. Main thread only.
class TrayHost : public Interface
{
public:
    /// The event loop will call `came` for each panel or dock that is there already or comes later.
    static std::unique_ptr<TrayHost> create(const std::function<void()>& came);
};
