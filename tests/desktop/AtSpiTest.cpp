#include "linux/AtSpi.h"

#include "SelectionFixture.h"

namespace {

constexpr std::chrono::milliseconds limit(1000);

class AtSpiTest : public SelectionFixture
{
protected:
    /// What the application in front tells, once the registry knows of it.
    std::optional<std::string> waitForText(const QProcess& application)
    {
        std::optional<std::string> text;
        m_session.waitUntil("the application to tell its selection", [&] {
            QCoreApplication::processEvents();
            text = m_atSpi.selectedText(static_cast<pid_t>(application.processId()), limit);
            return text.has_value();
        });
        return text;
    }

    AtSpi m_atSpi;
};

TEST_F(AtSpiTest, AGtkEditorTellsItsSelection)
{
    QFile file(m_session.path("note.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("  naïve 👩 word \n");
    file.close();
    const QProcess& editor = m_session.start("mousepad", {"--disable-server", file.fileName()});
    waitUntilInFront(m_session.waitForWindow({"--name", "Mousepad$"}));
    selectAll("word");
    EXPECT_EQ(waitForText(editor), "  naïve 👩 word \n");
}

TEST_F(AtSpiTest, AQtEditorTellsItsSelection)
{
    const QProcess& editor = startAccessibleApp({"--editor", "a naïve 👩 text"});
    selectAll("text");
    EXPECT_EQ(waitForText(editor), "a naïve 👩 text");
}

TEST_F(AtSpiTest, AnApplicationThatIsFrozenIsNotWaitedFor)
{
    const QProcess& editor = startAccessibleApp({"--editor", "text"});
    selectAll("text");
    ASSERT_TRUE(waitForText(editor));
    stop(editor);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(m_atSpi.selectedText(static_cast<pid_t>(editor.processId()),
                                   std::chrono::milliseconds(150)),
              std::nullopt);
    EXPECT_GE(timer.elapsed(), 100);
    EXPECT_LT(timer.elapsed(), 400);
    resume(editor);
}

TEST_F(AtSpiTest, WithoutABusThereIsNothing)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "");
    EXPECT_EQ(m_atSpi.selectedText(::getpid(), limit), std::nullopt);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    EXPECT_EQ(m_atSpi.selectedText(::getpid(), limit), std::nullopt);
}

TEST_F(AtSpiTest, TheDesktopsSettingIsNotChanged)
{
    const QProcess& application = startApp({"--editor", "text"});
    const QStringList question = {"--session",
                                  "--print-reply=literal",
                                  "--dest=org.a11y.Bus",
                                  "/org/a11y/bus",
                                  "org.freedesktop.DBus.Properties.Get",
                                  "string:org.a11y.Status",
                                  "string:IsEnabled"};
    const QByteArray before = m_session.run("dbus-send", question);
    EXPECT_EQ(m_atSpi.selectedText(static_cast<pid_t>(application.processId()), limit),
              std::nullopt);
    EXPECT_EQ(m_session.run("dbus-send", question), before);
}

} // namespace
