#pragma once

/// What the desktop offers windows. Any thread.
namespace Desktop {

/// Whether there is one that can show windows at all.
bool isAvailable();

/// Whether windows may be translucent in part, as round corners and shadows are.
bool isComposited();

} // namespace Desktop
