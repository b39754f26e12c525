#include "OwnWindow.h"

#include "Desktop.h"
#include "DesktopKind.h"
#include "X11Connection.h"

#include <QGuiApplication>
#include <QRect>

#include <array>
#include <optional>

namespace {

constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;

std::unique_ptr<X11Connection> connect()
{
    return DesktopKind::isX11() ? X11Connection::open() : nullptr;
}

/// The workspace that the user looks at; nothing if `window` is on it or on all of them.
std::optional<std::uint32_t> otherWorkspace(X11Connection& connection, xcb_window_t window)
{
    const auto present = connection.value(connection.root(), "_NET_CURRENT_DESKTOP");
    const auto own = connection.value(window, "_NET_WM_DESKTOP");
    const bool isHere = !present || !own || *own == *present || *own == everyWorkspace;
    return isHere ? std::nullopt : present;
}

QRect areaOf(X11Connection& connection, xcb_window_t window)
{
    const auto sizeQuestion = xcb_get_geometry(connection.get(), window);
    const auto placeQuestion =
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0);
    const auto size = connection.reply<xcb_get_geometry_reply_t>(sizeQuestion);
    const auto place = connection.reply<xcb_translate_coordinates_reply_t>(placeQuestion);
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

} // namespace

/// This goes over Qt's connection, because on any other the server may not know the window yet. Qt
/// adds its own states to those that it finds.
void OwnWindow::keepOffLists(Id window)
{
    auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const auto connection = connect();
    if (application == nullptr || !connection)
        return;
    const std::array states = {connection->atom("_NET_WM_STATE_SKIP_TASKBAR"),
                               connection->atom("_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(application->connection(), XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window), connection->atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, states.size(), states.data());
}

bool OwnWindow::isHere(Id window)
{
    const auto connection = connect();
    return !connection || !otherWorkspace(*connection, static_cast<xcb_window_t>(window));
}

void OwnWindow::bringHere(Id window)
{
    const auto connection = connect();
    if (!connection)
        return;
    const auto own = static_cast<xcb_window_t>(window);
    const auto workspace = otherWorkspace(*connection, own);
    if (!workspace)
        return;
    constexpr std::uint32_t application = 1; // the kind of program that asks
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = own;
    request.type = connection->atom("_NET_WM_DESKTOP");
    request.data.data32[0] = *workspace;
    request.data.data32[1] = application;
    xcb_send_event(connection->get(), 0, connection->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&request));
    connection->finish(); // so that it comes before requests on other connections
}

bool OwnWindow::covers(Id window, std::uint32_t other)
{
    // With a compositor the picture of a window shows nothing of others.
    const auto connection = Desktop::isComposited() ? nullptr : connect();
    return connection && areaOf(*connection, static_cast<xcb_window_t>(window))
                             .intersects(areaOf(*connection, other));
}
