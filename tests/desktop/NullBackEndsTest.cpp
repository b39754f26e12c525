#include "AppError.h"
#include "Desktop.h"
#include "GlobalHotKey.h"
#include "OutsideClicks.h"
#include "ScreenGrab.h"
#include "ScreenPermission.h"
#include "Screenshot.h"
#include "SelectionFixture.h"
#include "TrayHost.h"
#include "WindowList.h"

#include <QCoroTask>

namespace {

// No test lives to see it: what waits for anything does not come to an end.
constexpr std::chrono::hours limit(1);

/// An application in front that would copy, and a kind of desktop the ports have no way on.
class NullBackEndsTest : public SelectionFixture, public testing::WithParamInterface<const char*>
{
public:
    ~NullBackEndsTest() override { qunsetenv("WAYLAND_DISPLAY"); }

protected:
    NullBackEndsTest() : m_foreign(startApp({"--copies", "copied"}))
    {
        putOnClipboard("earlier");
        const QByteArray kind = GetParam();
        if (kind == "Wayland")
            qputenv("WAYLAND_DISPLAY", "wayland-0");
        else if (kind == "NoDisplay")
            qunsetenv("DISPLAY");
        else
            qputenv("DISPLAY", ":9999");
        m_ports = SelectionGrabber::systemPorts();
    }

    static std::string errorOf(ScreenGrab::Kind kind)
    {
        try {
            ScreenGrab::captureText(kind);
        } catch (const AppError& error) {
            return error.message();
        }
        return "no AppError";
    }

    QProcess& m_foreign;
};

TEST_P(NullBackEndsTest, EveryGrabIsNothingAndTouchesNothing)
{
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::grab(m_ports)), std::nullopt);
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::axSelectedText(m_ports)), std::nullopt);
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::copySelection(m_ports)), std::nullopt);
    EXPECT_EQ(clipboard(), "earlier");
    EXPECT_EQ(m_foreign.readAllStandardOutput(), "");
}

TEST_P(NullBackEndsTest, EveryCaptureEndsInTheSentenceOfItsKind)
{
    EXPECT_EQ(errorOf(ScreenGrab::Kind::window), "No window found to capture.");
    const bool isX11 = GetParam() == std::string("NoServer"); // as far as one can see
    EXPECT_EQ(errorOf(ScreenGrab::Kind::screen),
              isX11 ? "Capture failed. The screen could not be read."
                    : "Capture failed. Pithwise can read the screen only in an X11 session. Choose "
                      "one when you log in.");
    EXPECT_EQ(errorOf(ScreenGrab::Kind::region), "Capture cancelled.");
}

TEST_P(NullBackEndsTest, ThePortsRefuse)
{
    const bool isWayland = GetParam() == std::string("Wayland");
    EXPECT_FALSE(m_ports.accessibility->isTrusted());
    EXPECT_EQ(m_ports.accessibility->selectedText(limit), std::nullopt);
    EXPECT_EQ(m_ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    m_ports.pasteboard->clear();
    m_ports.pasteboard->write({{"UTF8_STRING", "text", ""}});
    EXPECT_TRUE(m_ports.pasteboard->snapshot(limit).items.empty());
    EXPECT_EQ(m_ports.pasteboard->plainText(limit), std::nullopt);
    EXPECT_EQ(m_ports.pasteboard->changeCount(), count);
    EXPECT_TRUE(WindowList::create()->windows().empty());
    if (isWayland) {
        EXPECT_FALSE(ScreenPermission::create()->isGranted());
        EXPECT_FALSE(ScreenPermission::create()->request());
    }
    EXPECT_FALSE(Screenshot::create()->takeScreen());
    EXPECT_FALSE(Screenshot::create()->takeWindow(7));
    Screenshot::create()->cancelRegion();
    EXPECT_FALSE(Screenshot::create()->takeRegion());
}

TEST_P(NullBackEndsTest, TheApplicationsPortsAreQuiet)
{
    int calls = 0;
    const auto hotKey = GlobalHotKey::create([&calls] { ++calls; });
    const auto clicks = OutsideClicks::create([&calls] { ++calls; });
    const auto host = TrayHost::create([&calls] { ++calls; });
    clicks->pause();
    clicks->resume();
    m_session.xdotool({"key", "ctrl+alt+s", "click", "1"});
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(Desktop::isAvailable(), GetParam() == std::string("Wayland"));
    EXPECT_EQ(Desktop::isComposited(), GetParam() != std::string("NoServer"));
}

INSTANTIATE_TEST_SUITE_P(OnDesktops, NullBackEndsTest,
                         testing::Values("Wayland", "NoDisplay", "NoServer"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
