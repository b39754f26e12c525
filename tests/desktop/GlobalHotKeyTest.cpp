#include "GlobalHotKey.h"

#include "SelectionFixture.h"
#include "TestWindow.h"

#include <QAbstractEventDispatcher>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/// The number that the next file to be opened gets.
int nextDescriptor()
{
    const int descriptor = ::dup(STDIN_FILENO);
    ::close(descriptor);
    return descriptor;
}

/// Handles what there is to be handled; whether that was anything.
bool handleEvents()
{
    return QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
}

class GlobalHotKeyTest : public SelectionFixture
{
protected:
    void press() { m_session.xdotool({"key", "ctrl+alt+s"}); }

    void keys(const QString& action, const QStringList& names)
    {
        for (const QString& name : names)
            m_session.xdotool({action, name});
    }

    void waitForPresses(int count)
    {
        m_session.waitUntil("the hotkey", [&] {
            QCoreApplication::processEvents();
            return m_presses >= count;
        });
        EXPECT_EQ(m_presses, count);
    }

    /// Presses the hotkey and does not let go of it, so that it repeats every ten milliseconds.
    void hold()
    {
        m_session.run("xset", {"r", "rate", "50", "100"});
        keys("keydown", {"37", "64", "39"});
    }

    /// What came before the press that this makes has been told by then.
    void expectPressesSoFar(int count)
    {
        keys("keyup", {"39", "37", "64"});
        keys("keydown", {"37", "64", "39"});
        keys("keyup", {"39", "37", "64"});
        waitForPresses(count + 1);
    }

    int m_presses = 0;
    int m_descriptor = nextDescriptor(); // of the hotkey's connection to the server
    std::unique_ptr<GlobalHotKey> m_hotKey = GlobalHotKey::create([this] { ++m_presses; });
};

TEST_F(GlobalHotKeyTest, EachPressIsToldOnce)
{
    press();
    waitForPresses(1);
    press();
    waitForPresses(2);
}

TEST_F(GlobalHotKeyTest, KeysThatAnotherProgramHasAreNotGranted)
{
    EXPECT_TRUE(m_hotKey->isGranted());
    auto other = GlobalHotKey::create([] {});
    EXPECT_FALSE(other->isGranted());
    m_hotKey.reset();
    other = GlobalHotKey::create([] {});
    EXPECT_TRUE(other->isGranted());
}

TEST_F(GlobalHotKeyTest, PressesThatCameWhileTheProgramWasBusyAreAllTold)
{
    for (int i = 0; i < 5; ++i)
        press(); // while nothing is handled
    waitForPresses(5);
}

TEST_F(GlobalHotKeyTest, AHeldKeyIsOnePress)
{
    hold();
    waitForPresses(1);
    // There is nothing else that the event loop would have to do.
    int repetitions = 0;
    m_session.waitUntil("the repetitions", [&] {
        if (handleEvents() && ++repetitions % 3 == 0)
            m_session.property(0, "_NET_ACTIVE_WINDOW"); // the program is busy now and then
        return repetitions >= 40;
    });
    expectPressesSoFar(1);
}

TEST_F(GlobalHotKeyTest, AKeyHeldWhileTheProgramIsBusyIsOnePress)
{
    constexpr int repetition = 2 * 32; // the bytes of a release and a press
    hold();
    m_session.waitUntil("repetitions that nobody has handled", [this] {
        int bytes = 0;
        return ::ioctl(m_descriptor, FIONREAD, &bytes) == 0 && bytes >= 30 * repetition;
    });
    expectPressesSoFar(1);
}

TEST_F(GlobalHotKeyTest, TheLockKeysDoNotMatter)
{
    int count = 0;
    for (const char* lock : {"Caps_Lock", "Num_Lock", "Caps_Lock", "Scroll_Lock", "Num_Lock"}) {
        m_session.xdotool({"key", lock});
        press();
        waitForPresses(++count);
    }
}

TEST_F(GlobalHotKeyTest, TheLayoutDoesNotMatter)
{
    int count = 0;
    const std::vector<QStringList> layouts = {
        {"us", "-variant", "dvorak"}, {"ru"}, {"us,gr"}, {"fr"}, {"us"}};
    for (const QStringList& layout : layouts) {
        m_session.run("setxkbmap", QStringList("-layout") + layout);
        keys("keydown", {"37", "64", "39"});
        keys("keyup", {"39", "37", "64"});
        waitForPresses(++count);
    }
}

TEST_F(GlobalHotKeyTest, AModifierThatMovesIsFollowed)
{
    m_session.run("xmodmap", {"-e", "clear mod2", "-e", "clear mod3", "-e", "add mod3 = Num_Lock"});
    m_session.xdotool({"key", "Num_Lock"});
    m_session.waitUntil("the hotkey", [this] {
        press();
        QCoreApplication::processEvents();
        return m_presses > 0;
    });
}

TEST_F(GlobalHotKeyTest, WithMoreOrFewerModifiersItIsAnotherKey)
{
    for (const char* key : {"s", "ctrl+s", "alt+s", "ctrl+alt+shift+s", "ctrl+alt+super+s"})
        m_session.xdotool({"key", key});
    press();
    waitForPresses(1);
}

TEST_F(GlobalHotKeyTest, TheApplicationInFrontDoesNotGetIt)
{
    QProcess& application = startApp({"--copies", "copied"});
    press();
    waitForPresses(1);
    m_session.xdotool({"key", "x"});
    QByteArray output;
    m_session.waitUntil("the next key", [&] {
        application.waitForReadyRead(10);
        output += application.readAllStandardOutput();
        return output.endsWith("X\n");
    });
    EXPECT_FALSE(output.contains("+S\n")) << output.toStdString();
}

TEST_F(GlobalHotKeyTest, WhereAnotherProgramHasItThereIsNone)
{
    m_hotKey.reset();
    TestWindow other(m_session);
    other.grabKey(39, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    m_hotKey = GlobalHotKey::create([this] { ++m_presses; });
    press();
    m_session.xdotool({"key", "Caps_Lock"}); // that variant is left
    press();
    waitForPresses(1);
}

TEST_F(GlobalHotKeyTest, ItIsGivenBackInTheEnd)
{
    m_hotKey.reset();
    TestWindow other(m_session);
    m_session.waitUntil("the key to be free", [&other] {
        try {
            other.grabKey(39, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
        } catch (const std::runtime_error&) {
            return false;
        }
        return true;
    });
}

TEST(GlobalHotKey, TheEndOfTheServerIsNoEndlessWork)
{
    DesktopSession session;
    int argc = 0;
    const QCoreApplication application(argc, nullptr); // one with windows would end too
    const auto hotKey = GlobalHotKey::create([] {});
    session.killServer();
    session.waitUntil("nothing to do", [] { return !handleEvents(); });
    for (int i = 0; i < 100; ++i)
        ASSERT_FALSE(handleEvents()) << i;
}

} // namespace
