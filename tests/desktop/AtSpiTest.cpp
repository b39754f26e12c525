#include "AtSpi.h"

#include "SelectionFixture.h"

#include <QDir>
#include <QFile>

#include <future>

namespace {

constexpr std::chrono::seconds limit(20);

class AtSpiTest : public SelectionFixture
{
protected:
    static Text ask(AtSpi& atSpi, const QProcess& application, std::chrono::milliseconds patience)
    {
        return atSpi.selectedText(static_cast<pid_t>(application.processId()), patience);
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
    EXPECT_EQ(waitUntilTold(editor), "  naïve 👩 word \n");
}

TEST_F(AtSpiTest, AQtEditorTellsItsSelection)
{
    const QProcess& editor = startAccessibleApp({"--editor", "a naïve 👩 text"});
    selectAll("text");
    EXPECT_EQ(waitUntilTold(editor), "a naïve 👩 text");
}

TEST_F(AtSpiTest, AnApplicationThatIsFrozenIsNotWaitedFor)
{
    const QProcess& editor = startAccessibleApp({"--editor", "text"});
    selectAll("text");
    EXPECT_EQ(waitUntilTold(editor), "text");
    stop(editor);
    // Somebody with more patience still waits when the others have given up.
    std::future<Text> patient = std::async(std::launch::async, [&editor] {
        AtSpi atSpi;
        return ask(atSpi, editor, limit);
    });
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ask(m_atSpi, editor, std::chrono::milliseconds(150)), std::nullopt);
    EXPECT_EQ(patient.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    resume(editor);
    EXPECT_EQ(patient.get(), "text");
}

TEST_F(AtSpiTest, NobodyIsAskedAboutMoreThanCanBeLookedAt)
{
    const QProcess& editor = startAccessibleApp({"--editor", "text", "--children", "20000"});
    selectAll("text");
    EXPECT_EQ(waitUntilTold(editor), "text");
    const QByteArray address =
        m_session.run("dbus-send", {"--session", "--print-reply=literal", "--dest=org.a11y.Bus",
                                    "/org/a11y/bus", "org.a11y.Bus.GetAddress"});
    QProcess& monitor = m_session.start(
        "dbus-monitor", {"--profile", "--address", QString::fromUtf8(address.trimmed())});
    QByteArray seen;
    const auto waitUntilSeen = [&](const char* what) {
        m_session.waitUntil("the monitor", [&] {
            EXPECT_EQ(ask(m_atSpi, editor, limit), "text");
            monitor.waitForReadyRead(10);
            seen += monitor.readAllStandardOutput();
            return seen.contains(what);
        });
    };
    waitUntilSeen("GetNSelections");
    seen.clear();
    waitUntilSeen("GetNSelections");
    EXPECT_GT(seen.count("GetState"), 0);
    EXPECT_LT(seen.count("GetState"), 1000);
}

TEST_F(AtSpiTest, TheSessionsBusIsFoundInTheFolderForSocketsToo)
{
    const QProcess& editor = startAccessibleApp({"--editor", "text"});
    selectAll("text");
    waitUntilTold(editor);
    const QString folder = m_session.path("50% of ~runtime;");
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString socket = address.section("path=", 1).section(',', 0, 0);
    ASSERT_TRUE(QDir().mkpath(folder) && QFile::link(socket, folder + "/bus"));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder));
    EXPECT_EQ(waitUntilTold(editor), "text");
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
    EXPECT_EQ(ask(m_atSpi, application, limit), std::nullopt);
    EXPECT_EQ(m_session.run("dbus-send", question), before);
}

} // namespace
