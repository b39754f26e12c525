#pragma once

#include <cstdint>
#include <memory>
#include <optional>

class AppDelegate;
class MainThreadQueue;

/// Keeps the popover out of a picture of the screen. For one thread that is not the main one.
class CaptureCurtain
{
public:
    /// `delegate` is used only by what is in `queue`.
    CaptureCurtain(std::shared_ptr<MainThreadQueue> queue, AppDelegate& delegate);
    ~CaptureCurtain() { lift(); }
    CaptureCurtain(const CaptureCurtain&) = delete;
    CaptureCurtain& operator=(const CaptureCurtain&) = delete;

    /// Returns when the popover is gone from the screen. For a picture of one `window` it stays
    /// where it does not cover that. At most once.
    void draw(std::optional<std::uint32_t> window = std::nullopt);

    /// Brings the popover back, where it has gone, at the first call.
    void lift();

private:
    const std::shared_ptr<MainThreadQueue> m_queue;
    AppDelegate& m_delegate;
    bool m_isDrawn = false;
};
