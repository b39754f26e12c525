#include "Accessibility.h"
#include "DesktopSession.h"
#include "KeyEvents.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"

#include <gtest/gtest.h>

namespace {

constexpr std::chrono::seconds limit(1);

void expectNothing(const SelectionGrabber::Ports& ports)
{
    EXPECT_EQ(ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
    EXPECT_EQ(ports.accessibility->selectedText(limit), std::nullopt);
    EXPECT_TRUE(ports.pasteboard->items(limit).empty());
    EXPECT_EQ(ports.pasteboard->plainText(limit), std::nullopt);
    ports.pasteboard->clear();
    ports.pasteboard->write({{"text/plain", "text", ""}});
}

TEST(DyingServerTest, ThePortsGoOnWithNothing)
{
    DesktopSession session;
    const SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    ports.pasteboard->write({{"UTF8_STRING", "text", ""}});
    EXPECT_EQ(ports.pasteboard->plainText(limit), "text");
    const std::uint64_t count = ports.pasteboard->changeCount();
    session.killServer();
    expectNothing(ports);
    EXPECT_NE(ports.pasteboard->changeCount(), count);
    expectNothing(SelectionGrabber::systemPorts());
}

} // namespace
