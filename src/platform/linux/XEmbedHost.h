#pragma once

#include "X11Connection.h"
#include "X11Events.h"

#include <functional>
#include <memory>

/// Notices panels that take in icons as windows. Main thread only.
class XEmbedHost
{
public:
    /// `came` is called as TrayHost::create() says. Null if no X server answers, or if it does not
    /// tell.
    static std::unique_ptr<XEmbedHost> create(const std::function<void()>& came);

private:
    XEmbedHost(std::unique_ptr<X11Connection> connection, const std::function<void()>& came);
    bool watch();

    const std::unique_ptr<X11Connection> m_connection;
    X11Events m_events;
};
