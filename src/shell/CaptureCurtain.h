#pragma once

#include <memory>

class AppDelegate;
class MainThreadQueue;

/// Keeps the popover out of a picture of the screen. For one thread that is not the main one.
class CaptureCurtain
{
public:
    /// Returns when the popover is gone from the screen. `delegate` is used only by what is in
    /// `queue`.
    CaptureCurtain(std::shared_ptr<MainThreadQueue> queue, AppDelegate& delegate);
    ~CaptureCurtain() { lift(); }
    CaptureCurtain(const CaptureCurtain&) = delete;
    CaptureCurtain& operator=(const CaptureCurtain&) = delete;

    /// Brings the popover back, where it was shown, at the first call.
    void lift();

private:
    const std::shared_ptr<MainThreadQueue> m_queue;
    AppDelegate& m_delegate;
    bool m_isLifted = false;
};
