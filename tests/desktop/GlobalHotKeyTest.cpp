#include "GlobalHotKey.h"

#include "SelectionFixture.h"
#include "TestWindow.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QTimer>

namespace {

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

    /// What came before the press that this makes has been told by then.
    void expectPressesSoFar(int count)
    {
        keys("keyup", {"39", "37", "64"});
        keys("keydown", {"37", "64", "39"});
        keys("keyup", {"39", "37", "64"});
        waitForPresses(count + 1);
    }

    int m_presses = 0;
    std::unique_ptr<GlobalHotKey> m_hotKey = GlobalHotKey::create([this] { ++m_presses; });
};

TEST_F(GlobalHotKeyTest, EachPressIsToldOnce)
{
    press();
    waitForPresses(1);
    press();
    waitForPresses(2);
}

TEST_F(GlobalHotKeyTest, PressesThatCameWhileTheProgramWasBusyAreAllTold)
{
    for (int i = 0; i < 5; ++i)
        press(); // while nothing is handled
    waitForPresses(5);
}

TEST_F(GlobalHotKeyTest, AHeldKeyIsOnePress)
{
    m_session.run("xset", {"r", "rate", "50", "100"});
    keys("keydown", {"37", "64", "39"});
    waitForPresses(1);
    // Forty repetitions, during which the program is busy now and then.
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 400;) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        if (timer.elapsed() % 3 == 0)
            m_session.property(0, "_NET_ACTIVE_WINDOW");
    }
    expectPressesSoFar(1);
}

TEST_F(GlobalHotKeyTest, AKeyHeldWhileTheProgramIsBusyIsOnePress)
{
    m_session.run("xset", {"r", "rate", "50", "100"});
    keys("keydown", {"37", "64", "39"});
    QProcess& busy = m_session.start("sleep", {"0.4"}); // while nothing is handled
    ASSERT_TRUE(busy.waitForFinished());
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
    int turns = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                     [&turns] { ++turns; });
    QEventLoop loop;
    QTimer::singleShot(200, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_LT(turns, 100);
}

} // namespace
