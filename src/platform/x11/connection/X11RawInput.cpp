#include "X11RawInput.h"

X11RawInput::X11RawInput(X11Connection& connection) : m_connection(connection)
{
    const xcb_query_extension_reply_t* extension = connection.extension(xcb_input_id);
    if (extension == nullptr)
        return;
    // Only from version 2.1 on do the events also come while another program has grabbed the
    // device.
    const auto version = connection.reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection.get(), 2, 2));
    if (version && version->major_version == 2 && version->minor_version >= 1)
        m_opcode = extension->major_opcode;
}

void X11RawInput::select(std::uint32_t mask)
{
    const struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    xcb_input_xi_select_events(m_connection.get(), m_connection.root(), 1, &request.head);
}

std::optional<X11RawInput::Event> X11RawInput::read(const xcb_generic_event_t& event) const
{
    if (event.response_type != XCB_GE_GENERIC)
        return std::nullopt;
    // The raw events of buttons and of keys have the same layout.
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (raw.extension != m_opcode)
        return std::nullopt;
    return Event{raw.event_type, raw.detail, raw.time};
}
