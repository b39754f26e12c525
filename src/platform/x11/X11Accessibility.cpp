#include "X11Accessibility.h"

#include "WindowGestures.h"

using std::chrono::milliseconds;

constexpr milliseconds tellingLimit(100); // of a terminal, whether something is selected in it
constexpr milliseconds primaryLimit(50);

/// Whether what the mouse did last in `terminal` has ended what was selected there. Not where that
/// is not known.
static bool hasEndedSelection(const FrontApplication& terminal)
{
    using Kind = WindowGestures::Kind;
    const auto last = WindowGestures::shared().last(terminal.window);
    return last == Kind::click || (last == Kind::clickWithShift && terminal.ignoresShift());
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

/// PRIMARY, where it belongs to the terminal in front and something is selected in its active
/// window: as the terminal says, else as the mouse has left it. Neither the owner of PRIMARY nor
/// its time tells: after a click, xterm keeps it, and even takes it once more.
std::optional<std::string> X11Accessibility::terminalsText(const FrontApplication& terminal,
                                                           X11Connection::Deadline deadline)
{
    const auto owner = m_connection->selectionOwner(XCB_ATOM_PRIMARY, deadline);
    if (!owner || !m_connection->isSameClient(*owner, terminal.window) ||
        !m_atSpi.hasSelection(terminal.process, tellingLimit)
             .value_or(!hasEndedSelection(terminal)))
        return std::nullopt;
    return m_reader.text(XCB_ATOM_PRIMARY, primaryLimit, deadline);
}
