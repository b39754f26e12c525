#include "LoopbackServer.h"
#include "Program.h"
#include "ReaderFixture.h"

#include <QFile>
#include <QRegularExpression>

namespace {

using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// What the application and every process it starts do with sockets, as the kernel sees it.
class SilenceTest : public ReaderFixture
{
protected:
    void launchTraced()
    {
        // The tracer is the one that is started on the side, so that the process is the program. A
        // sanitizer's search for leaks fails in a process that is traced.
        QProcess& process = m_session.start(
            "env", {tellsAll, "ASAN_OPTIONS=detect_leaks=0", "strace", "-D", "-f", "-qq", "-e",
                    "trace=network", "-o", m_trace, Program::path(), "--model", standin()});
        m_session.waitUntil("the application", [this] { return isAnswering(); });
        m_reader.follow(process.processId());
        show();
    }

    void summarizeFile()
    {
        QFile file(m_session.path("notes.txt"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("Three short words.") > 0);
        file.close();
        m_reader.perform(m_reader.find("radio button", "Document"), "Toggle");
        m_reader.perform(m_reader.find("push button", "Choose File…"), "Press");
        waitUntilFocused("text", "File name:");
        type(file.fileName());
        press({"Return"});
        m_reader.find("label", "notes.txt · 3 words");
        waitForSummary();
    }

    /// All that `pattern` finds in what was traced so far.
    std::vector<std::string> traced(const QString& pattern) const
    {
        QFile file(m_trace);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString trace = QString::fromUtf8(file.readAll());
        std::vector<std::string> found;
        for (const auto& match : QRegularExpression(pattern).globalMatch(trace))
            found.push_back(match.captured(1).toStdString());
        return found;
    }

    /// The kinds of sockets that were made.
    std::vector<std::string> kinds() const { return traced(R"( socket\((\w+))"); }

    /// Where connections were made to.
    std::vector<std::string> addresses() const { return traced(R"( connect\(\d+, \{([^}]*)\})"); }

    /// The socket in the address of a bus.
    static std::string pathOf(const QString& bus)
    {
        return bus.section("path=", 1).section(',', 0, 0).toStdString();
    }

    const QString m_trace = m_session.path("trace");
};

TEST_F(SilenceTest, ASummaryOfAFileTouchesNoSocketButTheDesktops)
{
    launchTraced();
    summarizeFile();
    const std::string session = pathOf(m_session.environment().value("DBUS_SESSION_BUS_ADDRESS"));
    const std::string accessibility = pathOf(QString::fromUtf8(
        m_session.run("dbus-send", {"--session", "--print-reply=literal", "--dest=org.a11y.Bus",
                                    "/org/a11y/bus", "org.a11y.Bus.GetAddress"})));
    RecordProperty("sockets", static_cast<int>(kinds().size()));
    RecordProperty("connections", static_cast<int>(addresses().size()));
    EXPECT_THAT(kinds(), Each("AF_UNIX"));
    EXPECT_THAT(addresses(), Not(IsEmpty()));
    for (const std::string& address : addresses()) {
        const bool isDisplay = address.find("/tmp/.X11-unix/X") != std::string::npos;
        const bool isBus = address.find('"' + session + '"') != std::string::npos ||
                           address.find('"' + accessibility + '"') != std::string::npos;
        EXPECT_TRUE(isDisplay || isBus) << address;
    }
}

TEST_F(SilenceTest, TheFetchOfAPageIsSeenInTheTrace)
{
    LoopbackServer server;
    LoopbackServer::Answer page;
    page.headers = {{"Content-Type", "text/html"}};
    const QByteArray paragraph = "<p>A paragraph of the page that is long enough to be kept.</p>";
    page.body = "<article>" + paragraph.repeated(10) + "</article>";
    server.setAnswer("/page", page);
    launchTraced();
    m_reader.perform(m_reader.find("radio button", "Web"), "Toggle");
    m_reader.perform(m_reader.find("text", "Web address"), "SetFocus");
    type(server.url("/page").toString());
    press({"Return"});
    waitForSummary();
    EXPECT_THAT(addresses(), Contains(StartsWith("sa_family=AF_INET")));
}

} // namespace
