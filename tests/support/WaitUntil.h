#pragma once

#include <functional>

/// Runs the thread's event loop until `condition` holds, which it asks after every turn and every
/// few milliseconds; false where that takes longer than a minute. Requires: an application object.
bool waitUntil(const std::function<bool()>& condition);
