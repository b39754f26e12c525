#pragma once

#include <functional>

/// The program's one hotkey: Control, Alt and the physical S key. Main thread only.
namespace HotKey {

/// Has `action` called for each press, always from the event loop; in place of the one before it.
/// The hotkey stays until the process ends. Nothing is reported where another program has it.
void install(std::function<void()> action);

/// Whether it works, which it does not where another program has it.
bool isGranted();

} // namespace HotKey
