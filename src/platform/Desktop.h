#pragma once

/// What the desktop offers windows. Any thread.
namespace Desktop {

/// Whether there is a desktop that can show windows at all.
bool isAvailable();

/// Whether parts of a window may be translucent, which round corners and shadows need.
bool isComposited();

} // namespace Desktop
