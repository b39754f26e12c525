#include "CaptureCurtain.h"

#include "AppDelegate.h"
#include "MainThreadQueue.h"

#include <chrono>
#include <future>
#include <thread>
#include <utility>

CaptureCurtain::CaptureCurtain(std::shared_ptr<MainThreadQueue> queue, AppDelegate& delegate)
    : m_queue(std::move(queue)), m_delegate(delegate)
{}

void CaptureCurtain::draw(std::optional<std::uint32_t> window)
{
    m_isDrawn = true;
    const auto hasGone = std::make_shared<std::promise<bool>>();
    std::future<bool> answer = hasGone->get_future();
    m_queue->post([delegate = &m_delegate, hasGone, window] {
        hasGone->set_value(delegate->hideForCapture(window));
    });
    // The main thread is never busy for this long, but it may have ended.
    constexpr std::chrono::seconds limit(1);
    if (answer.wait_for(limit) != std::future_status::ready || !answer.get())
        return;
    // Other programs have yet to draw what was below the popover. None of them tells when it has.
    constexpr std::chrono::milliseconds redraw(200);
    std::this_thread::sleep_for(redraw);
}

void CaptureCurtain::lift()
{
    if (std::exchange(m_isDrawn, false))
        m_queue->post([delegate = &m_delegate] { delegate->showAfterCapture(); });
}
