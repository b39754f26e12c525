#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr std::uint16_t side = 24; // of an icon, in pixels

/// A panel that takes windows in as icons, one at a time.
class XEmbedPanel
{
public:
    XEmbedPanel(std::int16_t x, std::int16_t y) : m_connection(xcb_connect(nullptr, nullptr))
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_root = screen->root;
        m_window = xcb_generate_id(m_connection);
        const std::uint32_t values[] = {screen->black_pixel, 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, x, y, side, side, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(m_connection, m_window);
    }

    int run()
    {
        const xcb_atom_t tray = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(m_connection, m_window, tray, XCB_CURRENT_TIME);
        send(m_root, XCB_EVENT_MASK_STRUCTURE_NOTIFY, atom("MANAGER"),
             {XCB_CURRENT_TIME, tray, m_window});
        std::puts("ready");
        std::fflush(stdout);
        const xcb_atom_t opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
        while (xcb_generic_event_t* event = xcb_wait_for_event(m_connection)) {
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event);
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE && message->type == opcode &&
                message->data.data32[1] == 0)
                dock(message->data.data32[2]);
            std::free(event);
        }
        return 0;
    }

private:
    struct Words
    {
        std::uint32_t values[5];
    };

    xcb_atom_t atom(const char* name)
    {
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t result = reply->atom;
        std::free(reply);
        return result;
    }

    void send(xcb_window_t window, std::uint32_t mask, xcb_atom_t type, const Words& words)
    {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = type;
        std::memcpy(message.data.data32, words.values, sizeof words.values);
        xcb_send_event(m_connection, 0, window, mask, reinterpret_cast<const char*>(&message));
        xcb_flush(m_connection);
    }

    void dock(xcb_window_t icon)
    {
        const std::uint32_t size[] = {side, side};
        xcb_reparent_window(m_connection, icon, m_window, 0, 0);
        xcb_configure_window(m_connection, icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             size);
        xcb_map_window(m_connection, icon);
        send(icon, 0, atom("_XEMBED"), {XCB_CURRENT_TIME, 0, 0, m_window, 0}); // it is embedded
        std::printf("icon %u\n", icon);
        std::fflush(stdout);
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
};

} // namespace

/// Its place on the screen comes as two arguments.
int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const auto number = [](const char* text) {
        return static_cast<std::int16_t>(std::strtol(text, nullptr, 10));
    };
    return XEmbedPanel(number(argv[1]), number(argv[2])).run();
}
