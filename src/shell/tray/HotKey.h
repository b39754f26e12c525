#pragma once

#include <functional>

/// The program's one hotkey: Control, Alt and the physical S key. Main thread only.
namespace HotKey {

/// From now on `action` is called for each press, always from the event loop, in place of the
/// action installed before. The hotkey stays until the process ends. If another program has it,
/// that is not reported here.
void install(std::function<void()> action);

/// Whether the hotkey works. It does not if another program has it.
bool isGranted();

} // namespace HotKey
