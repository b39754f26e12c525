#include "X11KeyEvents.h"

#include "FrontApplication.h"

#include <xcb/xtest.h>

#include <cstddef>

namespace {

constexpr std::chrono::milliseconds limit(100);
constexpr xcb_keycode_t physicalC = 54; // the same on every keyboard that Linux knows
constexpr xcb_keysym_t smallC = 'c';

/// The first key that sets the modifier `index`, 0 if there is none.
xcb_keycode_t firstKey(const xcb_get_modifier_mapping_reply_t& map, int index)
{
    const xcb_keycode_t* row =
        xcb_get_modifier_mapping_keycodes(&map) + std::ptrdiff_t{index} * map.keycodes_per_modifier;
    for (int i = 0; i < map.keycodes_per_modifier; ++i) {
        if (row[i] != 0)
            return row[i];
    }
    return 0;
}

} // namespace

bool X11KeyEvents::isAvailable() const
{
    return m_connection->extension(xcb_test_id) != nullptr;
}

/// Releases all keys, not only the modifiers. A letter that is still held would begin to repeat
/// without its modifiers, and replace what is selected.
void X11KeyEvents::releaseHeldKeys(Deadline deadline)
{
    const auto keys = m_connection->reply<xcb_query_keymap_reply_t>(
        xcb_query_keymap(m_connection->get()), deadline);
    constexpr unsigned int keyCount = 256;
    for (unsigned int key = 0; keys && key < keyCount; ++key) {
        if (((keys->keys[key / 8] >> (key % 8)) & 1U) != 0)
            send(XCB_KEY_RELEASE, static_cast<xcb_keycode_t>(key));
    }
}

/// The key that types a c in the present layout. If there is none, the key that types it on most
/// keyboards: applications take that for a c when the layout has no Latin letters.
xcb_keycode_t X11KeyEvents::copyKey(Deadline deadline)
{
    const xcb_setup_t& setup = *xcb_get_setup(m_connection->get());
    const auto count = static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1);
    const auto pointer = m_connection->reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection->get(), m_connection->root()), deadline);
    const auto map = m_connection->reply<xcb_get_keyboard_mapping_reply_t>(
        xcb_get_keyboard_mapping(m_connection->get(), setup.min_keycode, count), deadline);
    if (!pointer || !map)
        return physicalC;
    // The highest bits of the state tell which of the configured layouts is in use. The first two
    // have two columns each.
    const int layout = (pointer->mask >> 13U) & 3;
    const int column = layout < 2 ? 2 * layout : map->keysyms_per_keycode;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
    for (int key = 0; key < count && column < map->keysyms_per_keycode; ++key) {
        if (symbols[key * map->keysyms_per_keycode + column] == smallC)
            return static_cast<xcb_keycode_t>(setup.min_keycode + key);
    }
    return physicalC;
}

void X11KeyEvents::send(std::uint8_t type, xcb_keycode_t key)
{
    xcb_test_fake_input(m_connection->get(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

KeyEvents::Outcome X11KeyEvents::sendCopy()
{
    const Deadline deadline = X11Connection::Clock::now() + limit;
    const auto application = FrontApplication::find(*m_connection, deadline);
    const auto map = m_connection->reply<xcb_get_modifier_mapping_reply_t>(
        xcb_get_modifier_mapping(m_connection->get()), deadline);
    const xcb_keycode_t control = map ? firstKey(*map, XCB_MAP_INDEX_CONTROL) : xcb_keycode_t{0};
    if (!application || application->isTerminal() || control == 0)
        return Outcome::notSent;
    const xcb_keycode_t key = copyKey(deadline);
    releaseHeldKeys(deadline);
    send(XCB_KEY_PRESS, control);
    send(XCB_KEY_PRESS, key);
    send(XCB_KEY_RELEASE, key);
    send(XCB_KEY_RELEASE, control);
    xcb_flush(m_connection->get());
    return m_connection->isLost() ? Outcome::notSent : Outcome::sent;
}
