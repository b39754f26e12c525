#pragma once

#include "WindowGestures.h"

#include <cstdint>
#include <optional>

/// What the mouse did last in the windows of all programs, for the whole process. Known while
/// somebody listens to the mouse, as the application does all the time. Any thread.
namespace X11LastGesture {

void press(const WindowGestures::Press& press);
void release(std::uint32_t button, int x, int y);

/// For whoever listens no longer: what is known would soon be out of date.
void forget();

/// Nothing where none is known.
std::optional<WindowGestures::Kind> in(std::uint32_t window);

} // namespace X11LastGesture
