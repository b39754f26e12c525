#include "Accessibility.h"
#include "DesktopSession.h"
#include "KeyEvents.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <gtest/gtest.h>

namespace {

constexpr std::chrono::seconds limit(1);

class DyingServerTest : public testing::Test
{
public:
    ~DyingServerTest() override
    {
        // What a grab leaves to the next turn of the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

protected:
    static void expectNothing(const SelectionGrabber::Ports& ports)
    {
        EXPECT_EQ(ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
        EXPECT_EQ(ports.accessibility->selectedText(limit), std::nullopt);
        EXPECT_TRUE(ports.pasteboard->snapshot(limit).items.empty());
        EXPECT_EQ(ports.pasteboard->plainText(limit), std::nullopt);
        ports.pasteboard->clear();
        ports.pasteboard->write({{"text/plain", "text", ""}});
    }

    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    DesktopSession m_session;
    QCoreApplication m_application{m_argc, m_argv}; // one with windows would end with the server
    SelectionGrabber::Ports m_ports = SelectionGrabber::systemPorts();
};

TEST_F(DyingServerTest, ThePortsGoOnWithNothing)
{
    m_ports.pasteboard->write({{"UTF8_STRING", "text", ""}});
    EXPECT_EQ(m_ports.pasteboard->plainText(limit), "text");
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    m_session.killServer();
    expectNothing(m_ports);
    EXPECT_NE(m_ports.pasteboard->changeCount(), count);
    expectNothing(SelectionGrabber::systemPorts());
}

TEST_F(DyingServerTest, AGrabUnderWayEndsWithNothing)
{
    QProcess& application = m_session.start(
        PITHWISE_DESKTOP_APP, {"--title", "Foreign", "--copies", "copied", "--delay", "10000"});
    const std::uint32_t window = m_session.waitForWindow({"--name", "^Foreign$"});
    m_session.waitUntil("the window in front", [&] { return m_session.isInFront(window); });
    // It waits for the copy once the application has the shortcut.
    QObject::connect(&application, &QProcess::readyReadStandardOutput, [&] {
        if (application.readAllStandardOutput().contains("Ctrl+C"))
            m_session.killServer();
    });
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::grab(m_ports)), std::nullopt);
    EXPECT_EQ(m_ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
    EXPECT_FALSE(m_session.isRunning());
}

} // namespace
