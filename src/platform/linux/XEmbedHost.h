#pragma once

#include "X11Connection.h"
#include "X11Events.h"

#include <functional>
#include <memory>

/// A panel that takes icons in as windows.
class XEmbedHost
{
public:
    /// Null where no X server answers or it does not tell. As for TrayHost::create.
    static std::unique_ptr<XEmbedHost> create(const std::function<void()>& came);

private:
    XEmbedHost(std::unique_ptr<X11Connection> connection, const std::function<void()>& came);
    bool watch();

    const std::unique_ptr<X11Connection> m_connection;
    X11Events m_events;
};
