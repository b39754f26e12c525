#include "X11LastGesture.h"

#include "Mutex.h"

namespace X11LastGesture {

static Mutex mutex;
static WindowGestures gestures PITHWISE_GUARDED_BY(mutex);

void press(const WindowGestures::Press& press)
{
    const MutexLock lock(mutex);
    gestures.press(press);
}

void release(std::uint32_t button, int x, int y)
{
    const MutexLock lock(mutex);
    gestures.release(button, x, y);
}

void forget()
{
    const MutexLock lock(mutex);
    gestures = {};
}

std::optional<WindowGestures::Kind> in(std::uint32_t window)
{
    const MutexLock lock(mutex);
    return gestures.last(window);
}

} // namespace X11LastGesture
