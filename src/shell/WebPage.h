#pragma once

#include <string>

/// Web pages for commands that have no event loop of their own.
namespace WebPage {

/// The reader text of the page at `address`. Throws what HTMLText::fetch throws. Blocks; an
/// interrupt ends the process at once, with the status that goes with it. Main thread, and no
/// QCoreApplication may be there.
std::string read(const std::string& address);

} // namespace WebPage
