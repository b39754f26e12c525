#include "X11RegionOverlay.h"

#include "Release.h"
#include "X11InputGrab.h"
#include "X11RegionPicture.h"

#include <QScopeGuard>

#include <poll.h>
#include <xcb/xcb_keysyms.h>

#include <array>
#include <atomic>

namespace X11RegionOverlay {

namespace {

constexpr xcb_keysym_t escapeKey = 0xFF1B;

using Symbols = std::unique_ptr<xcb_key_symbols_t, Release<xcb_key_symbols_free>>;

template <typename Event>
QPoint position(const Event& event)
{
    return {event.root_x, event.root_y};
}

void follow(RegionGesture& gesture, xcb_generic_event_t& event, const Symbols& symbols)
{
    switch (event.response_type) { // other programs' events have one more bit
    case 0:                        // an error: the picture may be missing
        gesture.cancel();
        break;
    case XCB_KEY_PRESS: {
        auto& key = reinterpret_cast<xcb_key_press_event_t&>(event);
        if (xcb_key_press_lookup_keysym(symbols.get(), &key, 0) == escapeKey)
            gesture.cancel();
        break;
    }
    case XCB_BUTTON_PRESS: {
        const auto& press = reinterpret_cast<xcb_button_press_event_t&>(event);
        gesture.press(press.detail, position(press));
        break;
    }
    case XCB_MOTION_NOTIFY:
        gesture.move(position(reinterpret_cast<xcb_motion_notify_event_t&>(event)));
        break;
    case XCB_BUTTON_RELEASE: {
        const auto& release = reinterpret_cast<xcb_button_release_event_t&>(event);
        gesture.release(release.detail, position(release));
        break;
    }
    default:
        break;
    }
}

/// Waits until there is something to read from the server. Returns false if the user wants to
/// cancel, or upon an error.
bool waitForServer(X11Connection& connection, int cancelDescriptor)
{
    if (connection.isLost())
        return false;
    std::array<pollfd, 2> sources = {
        {{xcb_get_file_descriptor(connection.get()), POLLIN, 0}, {cancelDescriptor, POLLIN, 0}}};
    ::poll(sources.data(), sources.size(), -1);
    return sources[1].revents == 0;
}

/// Follows the user until they have chosen or cancelled. Returns the rectangle, empty if they have
/// cancelled.
QRect followUser(X11Connection& connection, X11RegionPicture& picture, int cancelDescriptor)
{
    using State = RegionGesture::State;
    const Symbols symbols(xcb_key_symbols_alloc(connection.get()));
    RegionGesture gesture;
    while (gesture.state() == State::waiting || gesture.state() == State::dragging) {
        X11Connection::Event event = connection.pendingEvent();
        if (!event) {
            // However many events there were, the picture is updated once.
            picture.update(gesture);
            event = connection.pendingEvent(); // one may have been read while the update was sent
        }
        if (event)
            follow(gesture, *event, symbols);
        else if (!waitForServer(connection, cancelDescriptor))
            gesture.cancel();
    }
    return gesture.state() == State::chosen ? gesture.rectangle() : QRect();
}

} // namespace

std::optional<QImage> select(X11Connection& connection, const QImage& screen, int cancelDescriptor)
{
    // Only one region is chosen at a time in a process, because there is one pointer.
    static std::atomic_flag isUnderWay;
    if (isUnderWay.test_and_set())
        return std::nullopt;
    const auto end = qScopeGuard([] { isUnderWay.clear(); });
    X11RegionPicture picture(connection, screen);
    X11InputGrab grab(connection);
    if (!grab.take(cancelDescriptor))
        return std::nullopt;
    picture.show();
    const QRect chosen = followUser(connection, picture, cancelDescriptor) & screen.rect();
    return chosen.isEmpty() ? std::nullopt : std::optional(screen.copy(chosen));
}

} // namespace X11RegionOverlay
