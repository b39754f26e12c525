#include "AppDelegate.h"

#include "AppState.h"
#include "CaptureCurtain.h"
#include "LoopbackServer.h"
#include "MainThreadQueue.h"
#include "ModelManager.h"
#include "OutsideClicks.h"
#include "SelectionFixture.h"
#include "TestWindow.h"
#include "Theme.h"
#include "X11Connection.h"

#include <QCoroFuture>
#include <QPromise>
#include <QWindow>

#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <thread>

namespace {

class AppDelegateTest : public SelectionFixture
{
protected:
    explicit AppDelegateTest(const DesktopSession::Options& options = {})
        : SelectionFixture(options)
    {
        m_session.waitUntil("a screen", [] { return QGuiApplication::primaryScreen() != nullptr; });
    }

    void waitFor(const char* what, const std::function<bool()>& condition)
    {
        m_session.waitUntil(what, [&condition] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    QWidget& popover() const
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == "popover")
                return *widget;
        }
        throw std::runtime_error("There is no popover.");
    }

    /// Its area, once it is where the window manager wants it and Qt knows that.
    QRect areaOfShownPopover()
    {
        waitFor("the popover in its place", [this] {
            return popover().windowHandle()->isExposed() &&
                   popover().geometry().topLeft() == serversPlaceOf(popover().winId());
        });
        return popover().geometry();
    }

    static std::optional<QPoint> serversPlaceOf(WId window)
    {
        const auto connection = X11Connection::open();
        const auto place =
            connection->reply<xcb_translate_coordinates_reply_t>(xcb_translate_coordinates(
                connection->get(), static_cast<xcb_window_t>(window), connection->root(), 0, 0));
        return place ? std::optional(QPoint(place->dst_x, place->dst_y)) : std::nullopt;
    }

    bool isFailed() const { return std::holds_alternative<ModelManager::Failed>(m_model.state()); }

    LoopbackServer m_server;
    std::filesystem::path m_file = m_session.path("model.gguf").toStdString();
    ModelManager m_model{{m_file, m_server.url("/model")}};
    AppState m_state{AppServices::system()};
    Theme m_theme;
    AppDelegate m_delegate{m_state, m_model, m_theme, [] { return std::make_unique<QWidget>(); }};
};

class CompositedAppDelegateTest : public AppDelegateTest
{
protected:
    CompositedAppDelegateTest()
        : AppDelegateTest({.windowManager = DesktopSession::WindowManager::compositing})
    {}
};

class ReadyModelTest : public AppDelegateTest
{
protected:
    ReadyModelTest() : m_ready({m_file, m_server.url("/model")}) {}

    std::ofstream m_written{m_file};
    ModelManager m_ready;
};

/// The selection takes as long as the test wants.
class HotkeyFlowTest : public AppDelegateTest
{
protected:
    HotkeyFlowTest()
    {
        m_selection.start();
        AppServices services = AppServices::system();
        services.grabSelection = [this]() -> QCoro::Task<std::optional<std::string>> {
            ++m_grabs;
            co_return co_await m_selection.future();
        };
        m_slowState = std::make_unique<AppState>(std::move(services));
        m_slow = std::make_unique<AppDelegate>(*m_slowState, m_model, m_theme,
                                               [] { return std::make_unique<QWidget>(); });
        m_slow->applicationDidFinishLaunching();
    }

    void press()
    {
        m_session.xdotool({"key", "ctrl+alt+s"});
        waitFor("the hotkey", [this, before = m_grabs] { return m_grabs > before; });
    }

    void finishFlows()
    {
        m_selection.addResult(std::optional<std::string>("selected"));
        m_selection.finish();
    }

    int m_grabs = 0;
    QPromise<std::optional<std::string>> m_selection;
    std::unique_ptr<AppState> m_slowState;
    std::unique_ptr<AppDelegate> m_slow;
};

TEST_F(HotkeyFlowTest, ThePopoverOpensWhenTheFlowHasReturned)
{
    press();
    EXPECT_FALSE(popover().isVisible());
    finishFlows();
    waitFor("the popover", [this] { return popover().isVisible(); });
    EXPECT_EQ(m_slowState->sourceText.get(), "selected");
}

TEST_F(HotkeyFlowTest, TwoPressesAreTwoFlows)
{
    press();
    press();
    EXPECT_EQ(m_grabs, 2);
    EXPECT_FALSE(popover().isVisible());
    finishFlows();
    waitFor("the popover", [this] { return popover().isVisible(); });
}

TEST_F(HotkeyFlowTest, APopoverClosedDuringTheFlowOpensInTheEnd)
{
    m_slow->showPopover();
    press();
    m_slow->togglePopover();
    EXPECT_FALSE(popover().isVisible());
    finishFlows();
    waitFor("the popover", [this] { return popover().isVisible(); });
}

TEST_F(HotkeyFlowTest, AFlowMayOutliveTheApplication)
{
    press();
    m_slow.reset();
    finishFlows();
    waitFor("the flow", [this] { return m_slowState->sourceText.get() == "selected"; });
}

TEST_F(AppDelegateTest, AMissingModelIsDownloaded)
{
    m_delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(std::holds_alternative<ModelManager::Downloading>(m_model.state()));
    waitFor("the answer", [this] { return isFailed(); });
    EXPECT_EQ(m_server.requests().size(), 1U);
}

TEST_F(AppDelegateTest, ADownloadThatFailedIsTriedAgain)
{
    m_model.start();
    waitFor("the answer", [this] { return isFailed(); });
    m_delegate.applicationDidFinishLaunching();
    waitFor("the second answer", [this] { return isFailed(); });
    EXPECT_EQ(m_server.requests().size(), 2U);
}

TEST_F(AppDelegateTest, ADownloadUnderWayIsLeftAlone)
{
    LoopbackServer::Answer answer;
    answer.body = "model";
    answer.stallAfter = 2;
    m_server.setAnswer("/model", answer);
    m_model.start();
    waitFor("the request", [this] { return !m_server.requests().empty(); });
    m_delegate.applicationDidFinishLaunching();
    m_server.release();
    waitFor("the model",
            [this] { return !std::holds_alternative<ModelManager::Downloading>(m_model.state()); });
    EXPECT_EQ(m_server.requests().size(), 1U);
}

TEST_F(ReadyModelTest, AModelThatIsThereIsNotDownloaded)
{
    ASSERT_TRUE(std::holds_alternative<ModelManager::Ready>(m_ready.state()));
    AppDelegate delegate(m_state, m_ready, m_theme, [] { return std::make_unique<QWidget>(); });
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(std::holds_alternative<ModelManager::Ready>(m_ready.state()));
    EXPECT_EQ(m_server.requests().size(), 0U);
}

TEST_F(AppDelegateTest, ThePopoverIsAwayDuringACaptureAndBackAfterIt)
{
    m_delegate.applicationDidFinishLaunching();
    m_delegate.showPopover();
    EXPECT_TRUE(m_delegate.hideForCapture());
    EXPECT_FALSE(popover().isVisible());
    EXPECT_FALSE(m_delegate.hideForCapture()); // another one
    m_delegate.showAfterCapture();
    EXPECT_FALSE(popover().isVisible());
    m_delegate.showAfterCapture();
    EXPECT_TRUE(popover().isVisible());
}

TEST_F(AppDelegateTest, ThePopoverStaysDuringACaptureOfAWindowThatItDoesNotCover)
{
    m_delegate.applicationDidFinishLaunching();
    m_delegate.showPopover();
    const QRect area = areaOfShownPopover();
    TestWindow beside(m_session, {20, 600, 200, 200});
    TestWindow below(m_session, {area.left() - 100, area.top() + 100, 200, 200});
    for (TestWindow* window : {&beside, &below})
        window->show();
    EXPECT_FALSE(m_delegate.hideForCapture(beside.id()));
    EXPECT_TRUE(popover().isVisible());
    EXPECT_TRUE(m_delegate.hideForCapture(below.id()));
    EXPECT_FALSE(popover().isVisible());
    m_delegate.showAfterCapture();
    m_delegate.showAfterCapture();
    EXPECT_TRUE(popover().isVisible());
}

TEST_F(CompositedAppDelegateTest, ThePopoverStaysDuringACaptureOfTheWindowBelowIt)
{
    m_delegate.applicationDidFinishLaunching();
    m_delegate.showPopover();
    TestWindow below(m_session, areaOfShownPopover());
    below.show();
    EXPECT_FALSE(m_delegate.hideForCapture(below.id()));
    EXPECT_TRUE(popover().isVisible());
}

TEST_F(AppDelegateTest, APopoverThatWasNotShownStaysAwayAfterACapture)
{
    m_delegate.applicationDidFinishLaunching();
    EXPECT_FALSE(m_delegate.hideForCapture());
    m_delegate.showAfterCapture();
    EXPECT_FALSE(popover().isVisible());
}

TEST_F(AppDelegateTest, ACurtainHidesThePopoverFromAnotherThread)
{
    m_delegate.applicationDidFinishLaunching();
    m_delegate.showPopover();
    const auto queue = MainThreadQueue::create();
    std::promise<void> drawn;
    std::atomic<bool> isDrawn = false;
    std::thread thread([&] {
        CaptureCurtain curtain(queue, m_delegate);
        curtain.draw();
        isDrawn = true;
        drawn.get_future().wait();
    });
    waitFor("the curtain", [&] { return isDrawn.load(); });
    EXPECT_FALSE(popover().isVisible());
    drawn.set_value();
    waitFor("the popover", [&] { return popover().isVisible(); });
    thread.join();
    queue->close();
}

TEST_F(AppDelegateTest, ACurtainDoesNotWaitForAProgramThatEnds)
{
    m_delegate.applicationDidFinishLaunching();
    const auto queue = MainThreadQueue::create();
    queue->close();
    // Nobody is going to answer it.
    std::thread([&] {
        CaptureCurtain curtain(queue, m_delegate);
        curtain.draw();
    }).join();
}

TEST_F(AppDelegateTest, ClicksCloseNothingWhileAChooserIsOpen)
{
    m_delegate.applicationDidFinishLaunching();
    m_delegate.showPopover();
    int clicks = 0;
    const auto witness = OutsideClicks::create([&clicks] { ++clicks; });
    m_delegate.pauseOutsideClicks();
    m_session.xdotool({"mousemove", "100", "700", "click", "1"});
    m_delegate.resumeOutsideClicks();
    waitFor("the click", [&clicks] { return clicks == 1; });
    QCoreApplication::processEvents(); // what the server has told others at the same time
    EXPECT_TRUE(popover().isVisible());
    m_session.xdotool({"mousemove", "110", "710", "click", "1"});
    waitFor("the popover to close", [this] { return !popover().isVisible(); });
}

} // namespace
