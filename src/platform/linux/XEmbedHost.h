#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <xcb/xcb.h>

#include <functional>
#include <memory>

class X11Connection;

/// Notices panels that take in icons as windows. Main thread only.
class XEmbedHost : public QAbstractNativeEventFilter
{
public:
    /// `came` is called as TrayHost::create() says. Null if no X server answers.
    static std::unique_ptr<XEmbedHost> create(const std::function<void()>& came);

    ~XEmbedHost() override;
    XEmbedHost(const XEmbedHost&) = delete;
    XEmbedHost& operator=(const XEmbedHost&) = delete;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    XEmbedHost(X11Connection& connection, std::function<void()> came);
    void tell();

    const xcb_atom_t m_manager;
    const xcb_atom_t m_tray;
    const std::function<void()> m_came;
    QObject m_context; // nothing is told after the end
};
