#include "WindowGestures.h"

#include <xcb/xproto.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::uint32_t left = 1;
constexpr std::uint32_t right = 3;

bool isNear(const WindowGestures::Press& press, int x, int y)
{
    constexpr int slack = 3; // pixels, as a hand trembles
    return std::max(std::abs(x - press.x), std::abs(y - press.y)) <= slack;
}

/// Or of a triple click.
bool isDoubleClick(const WindowGestures::Press& before, const WindowGestures::Press& press)
{
    constexpr std::uint32_t longest = 500; // milliseconds
    return press.window == before.window && press.time - before.time <= longest &&
           isNear(before, press.x, press.y);
}

/// Whether it moves or resizes the window, of which the program in it hears nothing.
bool isForWindowManager(std::uint16_t modifiers)
{
    constexpr int alt = XCB_MOD_MASK_1;
    constexpr int super = XCB_MOD_MASK_4;
    const int held = modifiers & (XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | alt | super);
    return held == alt || held == super;
}

} // namespace

WindowGestures& WindowGestures::shared()
{
    static WindowGestures gestures;
    return gestures;
}

void WindowGestures::press(const Press& press)
{
    if (press.button != left && press.button != right)
        return; // the wheel, which may turn while something is dragged
    const MutexLock lock(m_mutex);
    const std::optional<Press> before = std::exchange(m_clicked, std::nullopt);
    m_held.reset();
    if (isForWindowManager(press.modifiers))
        return;
    if (press.button == right) {
        note(press.window, Kind::selection);
        return;
    }
    m_held = press;
    if (before && isDoubleClick(*before, press))
        note(press.window, Kind::selection);
    else if ((press.modifiers & XCB_MOD_MASK_SHIFT) != 0)
        note(press.window, Kind::clickWithShift);
    else
        note(press.window, Kind::click);
}

/// What is dragged away and back selects nothing, so the way does not matter.
void WindowGestures::release(std::uint32_t button, int x, int y)
{
    const MutexLock lock(m_mutex);
    if (!m_held || m_held->button != button)
        return;
    const Press press = *m_held;
    m_held.reset();
    if (isNear(press, x, y))
        m_clicked = press;
    else
        note(press.window, Kind::selection);
}

void WindowGestures::forget()
{
    const MutexLock lock(m_mutex);
    m_notes = {};
    m_held.reset();
    m_clicked.reset();
}

std::optional<WindowGestures::Kind> WindowGestures::last(std::uint32_t window) const
{
    const MutexLock lock(m_mutex);
    const auto found = std::find_if(m_notes.begin(), m_notes.end(),
                                    [=](const Note& note) { return note.window == window; });
    return found != m_notes.end() ? found->kind : std::nullopt;
}

/// In place of the window's older note, or else of the oldest one.
void WindowGestures::note(std::uint32_t window, Kind kind)
{
    const auto place = std::find_if(m_notes.begin(), m_notes.end() - 1,
                                    [=](const Note& note) { return note.window == window; });
    std::rotate(m_notes.begin(), place, place + 1);
    m_notes.front() = {window, kind};
}
