#pragma once

#include <string>

/// Reads web pages for commands that have no event loop of their own.
namespace WebPage {

/// The reader text of the page at `address`. Throws what HTMLText::fetch throws. Blocks. An
/// interrupt ends the process at once, with the exit status for an interrupt. Main thread; there
/// must be no QCoreApplication.
std::string read(const std::string& address);

} // namespace WebPage
