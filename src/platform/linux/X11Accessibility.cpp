#include "X11Accessibility.h"

#include "FrontApplication.h"

#include <algorithm>
#include <cctype>

using std::chrono::milliseconds;

// What is kept of the time for PRIMARY.
constexpr milliseconds primaryLimit(50);

static bool isBlank(const std::string& text)
{
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char byte) { return std::isspace(byte) != 0; });
}

std::unique_ptr<X11Accessibility> X11Accessibility::create()
{
    auto connection = X11Connection::open();
    if (!connection)
        return nullptr;
    return std::unique_ptr<X11Accessibility>(new X11Accessibility(std::move(connection)));
}

X11Accessibility::X11Accessibility(std::unique_ptr<X11Connection> connection)
    : m_connection(std::move(connection)), m_reader(*m_connection)
{}

std::optional<std::string> X11Accessibility::selectedText(milliseconds limit)
{
    const auto begin = X11Connection::Clock::now();
    const auto application = FrontApplication::find(*m_connection, begin + limit);
    if (!application)
        return std::nullopt;
    auto text = m_atSpi.selectedText(application->process, limit - primaryLimit);
    if (text && !isBlank(*text))
        return text;
    return primaryText(application->window, begin + limit);
}

std::optional<std::string> X11Accessibility::primaryText(xcb_window_t window,
                                                         X11Connection::Deadline deadline)
{
    // Another program's PRIMARY may be from an hour ago.
    if (!m_connection->isSameClient(m_reader.owner(XCB_ATOM_PRIMARY, deadline), window))
        return std::nullopt;
    return m_reader.text(XCB_ATOM_PRIMARY, primaryLimit, deadline);
}
