#pragma once

#include "Mutex.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

/// What the mouse did last in each window, as far as when and where its buttons are pressed and
/// released tells. Windows, buttons and modifiers are numbered as X does. Any thread.
class WindowGestures
{
public:
    enum class Kind {
        click,          // selects nothing and ends what was selected
        clickWithShift, // extends what is selected, but in programs that make no difference
        selection,      // a drag, a double click, or the right button, which can extend as well
    };

    struct Press
    {
        std::uint32_t window;
        std::uint32_t button;
        std::uint32_t time; // in milliseconds; wraps around after 49 days
        int x;              // on the root window, in pixels
        int y;
        std::uint16_t modifiers;
    };

    /// How many windows are known, the latest ones. Every menu is a window.
    static constexpr std::size_t mostWindows = 256;

    /// Those in the windows of all programs, for the whole process. Known while somebody listens to
    /// the mouse, as the application does all the time.
    static WindowGestures& shared();

    void press(const Press& press);
    void release(std::uint32_t button, int x, int y);

    /// For whoever listens no longer: what is known would soon be out of date.
    void forget();

    /// Of the last gesture that began in `window`, which may go on. Nothing where none is known.
    std::optional<Kind> last(std::uint32_t window) const;

private:
    struct Note
    {
        std::uint32_t window = 0;
        std::optional<Kind> kind;
    };

    void note(std::uint32_t window, Kind kind) PITHWISE_REQUIRES(m_mutex);

    mutable Mutex m_mutex;
    std::array<Note, mostWindows> m_notes PITHWISE_GUARDED_BY(m_mutex); // latest first
    std::optional<Press> m_held PITHWISE_GUARDED_BY(m_mutex);
    // The last one, if nothing else came after it.
    std::optional<Press> m_clicked PITHWISE_GUARDED_BY(m_mutex);
};
