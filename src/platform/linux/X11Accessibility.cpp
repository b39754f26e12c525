#include "X11Accessibility.h"

using std::chrono::milliseconds;

constexpr milliseconds tellingLimit(100); // of a terminal, whether something is selected in it
constexpr milliseconds primaryLimit(50);

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
    const auto deadline = X11Connection::Clock::now() + limit;
    const auto application = FrontApplication::find(*m_connection, deadline);
    if (!application)
        return std::nullopt;
    return application->isTerminal() ? terminalsText(*application, deadline)
                                     : m_atSpi.selectedText(application->process, limit);
}

/// PRIMARY, where it belongs to the terminal in front, which does not say that nothing is selected
/// in its active window.
std::optional<std::string> X11Accessibility::terminalsText(const FrontApplication& terminal,
                                                           X11Connection::Deadline deadline)
{
    const auto owner = m_reader.owner(XCB_ATOM_PRIMARY, deadline);
    if (!owner || !m_connection->isSameClient(*owner, terminal.window) ||
        !m_atSpi.hasSelection(terminal.process, tellingLimit).value_or(true))
        return std::nullopt;
    return m_reader.text(XCB_ATOM_PRIMARY, primaryLimit, deadline);
}
