#include "X11GlobalHotKey.h"

#include <xcb/xcb_keysyms.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace {

constexpr xcb_keycode_t physicalS = 39; // the same on every keyboard that Linux knows
constexpr xcb_keysym_t leftAlt = 0xFFE9;
constexpr xcb_keysym_t numLock = 0xFF7F;
constexpr xcb_keysym_t scrollLock = 0xFF14;

/// Knows which keys act as which modifiers.
class ModifierMap
{
public:
    explicit ModifierMap(X11Connection& connection)
        : m_symbols(xcb_key_symbols_alloc(connection.get())),
          m_map(connection.reply<xcb_get_modifier_mapping_reply_t>(
              xcb_get_modifier_mapping(connection.get())))
    {}

    /// The modifier that the key with `symbol` sets; 0 if there is none.
    std::uint16_t maskOf(xcb_keysym_t symbol) const
    {
        const X11Connection::Owned<xcb_keycode_t> keys(
            xcb_key_symbols_get_keycode(m_symbols.get(), symbol));
        if (!keys || !m_map)
            return 0;
        for (const xcb_keycode_t* key = keys.get(); *key != XCB_NO_SYMBOL; ++key) {
            if (const std::uint16_t mask = maskOfKey(*key); mask != 0)
                return mask;
        }
        return 0;
    }

private:
    std::uint16_t maskOfKey(xcb_keycode_t key) const
    {
        constexpr int modifierCount = 8;
        const std::ptrdiff_t width = m_map->keycodes_per_modifier;
        const xcb_keycode_t* row = xcb_get_modifier_mapping_keycodes(m_map.get());
        for (unsigned int modifier = 0; modifier < modifierCount; ++modifier, row += width) {
            if (std::find(row, row + width, key) != row + width)
                return static_cast<std::uint16_t>(1U << modifier);
        }
        return 0;
    }

    std::unique_ptr<xcb_key_symbols_t, Release<xcb_key_symbols_free>> m_symbols;
    X11Connection::Owned<xcb_get_modifier_mapping_reply_t> m_map;
};

} // namespace

X11GlobalHotKey::X11GlobalHotKey(std::unique_ptr<X11Connection> connection,
                                 std::function<void()> pressed)
    : m_connection(std::move(connection)),
      m_pressed(std::move(pressed)),
      m_input(*m_connection),
      m_events(*m_connection, [this](const xcb_generic_event_t& event) { handle(event); })
{
    grab();
    m_events.flush();
}

/// The modifiers of the hotkey in every state of the lock keys: a grab is for exactly one state.
std::set<std::uint16_t> X11GlobalHotKey::findModifiers()
{
    const ModifierMap map(*m_connection);
    std::uint16_t alt = map.maskOf(leftAlt);
    if (alt == 0)
        alt = XCB_MOD_MASK_1;
    const auto shortcut = static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | alt);
    std::set<std::uint16_t> modifiers = {shortcut};
    for (const std::uint16_t lock : {static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK),
                                     map.maskOf(numLock), map.maskOf(scrollLock)}) {
        for (const std::uint16_t others : std::set(modifiers))
            modifiers.insert(static_cast<std::uint16_t>(others | lock));
    }
    return modifiers;
}

/// Grabs the hotkey in every state of the lock keys. If another program has it in any of these
/// states, it is not ours.
void X11GlobalHotKey::grab()
{
    std::set<std::uint16_t> modifiers = findModifiers();
    if (modifiers == m_modifiers)
        return;
    m_modifiers = std::move(modifiers);
    xcb_ungrab_key(m_connection->get(), physicalS, m_connection->root(), XCB_MOD_MASK_ANY);
    std::vector<xcb_void_cookie_t> grabs;
    for (const std::uint16_t mask : m_modifiers)
        grabs.push_back(xcb_grab_key_checked(m_connection->get(), 0, m_connection->root(), mask,
                                             physicalS, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    m_isGranted = true;
    for (const xcb_void_cookie_t grab : grabs) {
        const X11Connection::Owned<xcb_generic_error_t> refusal(
            xcb_request_check(m_connection->get(), grab));
        m_isGranted = m_isGranted && !refusal;
    }
}

void X11GlobalHotKey::handle(const xcb_generic_event_t& event)
{
    if (event.response_type == XCB_KEY_PRESS) {
        press(reinterpret_cast<const xcb_key_press_event_t&>(event).time);
    } else if (event.response_type == XCB_KEY_RELEASE) {
        const auto& key = reinterpret_cast<const xcb_key_release_event_t&>(event);
        if (key.detail == physicalS)
            release(key.time);
    } else if (event.response_type == XCB_MAPPING_NOTIFY) {
        grab();
    } else if (const auto raw = m_input.read(event);
               raw && raw->type == XCB_INPUT_RAW_KEY_RELEASE && raw->detail == physicalS) {
        release(raw->time);
    }
}

/// A key that is held sends press after press. While we have the keyboard, a release at the same
/// moment comes before each.
void X11GlobalHotKey::press(xcb_timestamp_t time)
{
    const bool isRepeated = m_isHeld || time == m_released;
    // The press has given us the keyboard. The application in front needs it in order to handle the
    // shortcut for "copy", which it may be sent next.
    xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
    if (!m_isHeld) {
        m_isHeld = true;
        // Without the keyboard, the release is heard only as a raw event. While the hotkey is not
        // held, no raw events are asked for, so that other keys are not heard.
        m_input.select(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
        if (!isKeyDown())
            release(time);
    }
    if (!isRepeated)
        m_pressed();
}

void X11GlobalHotKey::release(xcb_timestamp_t time)
{
    m_isHeld = false;
    m_released = time;
    m_input.select(0);
}

bool X11GlobalHotKey::isKeyDown()
{
    const auto keys =
        m_connection->reply<xcb_query_keymap_reply_t>(xcb_query_keymap(m_connection->get()));
    return keys && ((keys->keys[physicalS / 8] >> (physicalS % 8)) & 1U) != 0;
}
