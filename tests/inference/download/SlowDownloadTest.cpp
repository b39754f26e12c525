#include "ModelManagerFixture.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QTcpSocket>

/// What takes its time, and what must not begin at all.
class SlowDownloadTest : public ModelManagerFixture
{
protected:
    /// A server that sends a byte whenever the one before has arrived.
    void startByteByByte(std::chrono::milliseconds stallLimit)
    {
        Answer answer = model(bigEnough);
        answer.stallAfter = 1;
        server.setAnswer("/model", answer);
        ModelManager::Options patient = options(server.url("/model"));
        patient.stallLimit = stallLimit;
        makeManager(patient);
        manager->start();
    }

    /// Returns when as many bytes have arrived, or the transfer has ended.
    void waitForBytes(qint64 count)
    {
        EXPECT_TRUE(waitUntil(
            [&] { return hasEnded() || (!reports.empty() && reports.back().first >= count); }));
    }

    /// Returns when the server has answered a request that has nothing to do with the manager.
    void waitForServer()
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(server.url().port()));
        socket.write("GET /ours HTTP/1.1\r\n\r\n");
        EXPECT_TRUE(waitUntil([&] { return socket.bytesAvailable() > 0; }));
    }

    static std::set<std::string> threads()
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task"))
            names.insert(entry.path().filename());
        return names;
    }
};

TEST_F(SlowDownloadTest, BytesThatKeepComingMayTakeLongerThanTheServerMayBeSilent)
{
    const std::chrono::milliseconds limit = std::chrono::seconds(2);
    startByteByByte(limit);
    qint64 sent = 1;
    waitForBytes(sent);
    QElapsedTimer sinceTheFirst;
    sinceTheFirst.start();
    // The time itself is what matters here.
    while (!hasEnded() && std::chrono::milliseconds(sinceTheFirst.elapsed()) < limit * 5 / 4) {
        server.release(++sent);
        waitForBytes(sent);
    }
    ASSERT_FALSE(hasEnded()) << "It has ended after " << sent << " bytes.";
    server.release();
    EXPECT_EQ(outcome(), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(SlowDownloadTest, AModelThatIsThereLeadsToNoRequest)
{
    writeModel("any content");
    waitForServer();
    const std::set<std::string> before = threads();
    makeManager();
    waitForServer();
    // Not even a thread from which a request may still come.
    EXPECT_EQ(threads(), before);
    EXPECT_EQ(manager->state(), State(Ready()));
    EXPECT_TRUE(published.empty());
    for (const LoopbackServer::Request& request : server.requests())
        EXPECT_EQ(request.path, "/ours");
}

TEST_F(SlowDownloadTest, AModelThatIsMissingLeadsToNoRequestBeforeTheStart)
{
    waitForServer();
    const std::set<std::string> before = threads();
    makeManager();
    waitForServer();
    EXPECT_EQ(threads(), before);
    EXPECT_EQ(manager->state(), State(Idle()));
    for (const LoopbackServer::Request& request : server.requests())
        EXPECT_EQ(request.path, "/ours");
}
