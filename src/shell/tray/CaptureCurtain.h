#pragma once

#include <cstdint>
#include <memory>
#include <optional>

class AppDelegate;
class MainThreadQueue;

/// Keeps the popover out of a picture of the screen. Used by one thread, which is not the main one.
class CaptureCurtain
{
public:
    /// `delegate` is used only by functions in `queue`, and so on the main thread.
    CaptureCurtain(std::shared_ptr<MainThreadQueue> queue, AppDelegate& delegate);
    ~CaptureCurtain() { lift(); }
    CaptureCurtain(const CaptureCurtain&) = delete;
    CaptureCurtain& operator=(const CaptureCurtain&) = delete;

    /// Hides the popover and returns when it is gone from the screen. For a picture of one `window`
    /// it stays if it does not cover that window. Called at most once.
    void draw(std::optional<std::uint32_t> window = std::nullopt);

    /// Brings the popover back if draw() has hidden it. Only the first call has an effect.
    void lift();

private:
    const std::shared_ptr<MainThreadQueue> m_queue;
    AppDelegate& m_delegate;
    bool m_isDrawn = false;
};
