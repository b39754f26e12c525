#include "GlobalHotKey.h"
#include "SelectionFixture.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <array>

namespace {

class KeyEventsTest : public SelectionFixture
{
protected:
    using Keys = std::array<std::uint8_t, 32>;

    static xcb_connection_t* connection()
    {
        return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    }

    /// The keys that are down, a bit each.
    static Keys keys()
    {
        xcb_query_keymap_reply_t* reply =
            xcb_query_keymap_reply(connection(), xcb_query_keymap(connection()), nullptr);
        Keys keys{};
        std::copy_n(reply->keys, keys.size(), keys.begin());
        std::free(reply);
        return keys;
    }

    static bool isDown(int key)
    {
        return ((keys()[static_cast<std::size_t>(key / 8)] >> (key % 8)) & 1) != 0;
    }

    /// All that has reached `application` when it is told the key x.
    std::string keysUntilX(QProcess& application)
    {
        m_session.xdotool({"key", "x"});
        QByteArray output;
        m_session.waitUntil("the keys", [&] {
            application.waitForReadyRead(10);
            output += application.readAllStandardOutput();
            return output.endsWith("X\n");
        });
        return output.toStdString();
    }

    static constexpr int leftAlt = 64;
};

TEST_F(KeyEventsTest, TheApplicationInFrontGetsOneShortcutAndNothingElse)
{
    QProcess& application = startApp({"--copies", "copied"});
    EXPECT_EQ(m_ports.keyEvents->sendCopy(), KeyEvents::Outcome::sent);
    m_session.waitUntil("the copy", [&] { return clipboard() == "copied"; });
    EXPECT_EQ(keysUntilX(application), "Ctrl+Control\nCtrl+C\nX\n");
    EXPECT_EQ(keys(), Keys{});
}

TEST_F(KeyEventsTest, ModifiersThatAreHeldAreReleasedAndNotPressedAgain)
{
    QProcess& application = startApp({"--copies", "copied"});
    m_session.xdotool(
        {"keydown", "ctrl", "keydown", "alt", "keydown", "shift", "keydown", "super"});
    EXPECT_TRUE(isDown(leftAlt));
    expectGrab("copied");
    EXPECT_EQ(keys(), Keys{});
    EXPECT_THAT(keysUntilX(application), testing::EndsWith("\nCtrl+C\nX\n"));
    // Letting go of them by hand is no key to anybody.
    m_session.xdotool({"keyup", "ctrl", "keyup", "alt", "keyup", "shift", "keyup", "super"});
    EXPECT_EQ(keysUntilX(application), "X\n");
}

TEST_F(KeyEventsTest, TheHotkeyThatIsHeldDoesNotKeepTheKeyboard)
{
    startApp({"--copies", "copied"});
    int presses = 0;
    const auto hotKey = GlobalHotKey::create([&presses] { ++presses; });
    m_session.xdotool({"keydown", "ctrl", "keydown", "alt", "keydown", "s"});
    m_session.waitUntil("the hotkey", [&presses] {
        QCoreApplication::processEvents();
        return presses == 1;
    });
    expectGrab("copied");
    EXPECT_EQ(keys(), Keys{}); // the letter would soon repeat
}

TEST_F(KeyEventsTest, TheKeyIsTheOneThatTypesACInThePresentLayout)
{
    m_session.run("setxkbmap", {"us", "-variant", "dvorak"});
    startApp({"--copies", "copied"});
    expectGrab("copied");
}

TEST_F(KeyEventsTest, ALayoutWithoutLatinLettersHasTheShortcutToo)
{
    m_session.run("setxkbmap", {"ru,us"});
    startApp({"--copies", "copied"});
    expectGrab("copied");
}

TEST_F(KeyEventsTest, CapsLockAndNumLockDoNotHinder)
{
    m_session.xdotool({"key", "Caps_Lock", "key", "Num_Lock"});
    startApp({"--copies", "copied"});
    expectGrab("copied");
}

TEST_F(KeyEventsTest, ATerminalGetsNothing)
{
    m_session.start("xterm", {"-T", "Terminal"});
    waitUntilInFront(m_session.waitForWindow({"--name", "^Terminal$"}));
    EXPECT_EQ(m_ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
}

TEST_F(KeyEventsTest, ATerminalWithAClassOfItsUsersIsKnownByItsProcess)
{
    m_session.start("xterm", {"-class", "Scratchpad", "-name", "scratchpad", "-T", "Terminal"});
    waitUntilInFront(m_session.waitForWindow({"--name", "^Terminal$"}));
    EXPECT_EQ(m_ports.keyEvents->sendCopy(), KeyEvents::Outcome::notSent);
}

} // namespace
