#include "ModelManager.h"
#include "ModelManagerFixture.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <system_error>

/// Every test begins with an old model in place, and whatever fails leaves that as it is.
class ModelManagerFailureTest : public ModelManagerFixture
{
protected:
    void SetUp() override { writeModel("old model"); }

    void TearDown() override
    {
        ModelManagerFixture::TearDown();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), "old model");
    }

    /// What the failure said, a sentence.
    static std::string message(const State& state)
    {
        const auto* failed = std::get_if<Failed>(&state);
        return failed != nullptr ? failed->message : "(no failure)";
    }

    /// `what`, and the system's words for `error`.
    static std::string sentence(const char* what, int error)
    {
        return what + (": " + std::generic_category().message(error)) + ".";
    }

    std::string downloadFrom(const QUrl& address)
    {
        makeManager(options(address));
        return message(download());
    }

    std::string downloadFromStalling(const Answer& answer)
    {
        server.setAnswer("/model", answer);
        ModelManager::Options impatient = options(server.url("/model"));
        impatient.stallLimit = std::chrono::seconds(1);
        makeManager(impatient);
        return message(download());
    }
};

TEST_F(ModelManagerFailureTest, AnswersOtherThanOkAreNamedByTheirStatus)
{
    for (const int status :
         {201, 204, 206, 300, 302, 304, 400, 401, 403, 404, 407, 410, 429, 500, 503, 599}) {
        const std::string expected = "Download failed (HTTP " + std::to_string(status) + ").";
        EXPECT_EQ(message(download({.status = status})), expected);
        EXPECT_EQ(message(download({.status = status, .body = "<p>A page</p>"})), expected);
    }
}

TEST_F(ModelManagerFailureTest, ALargeBodyOfAnErrorIsNotTheModel)
{
    Answer answer = model(bigEnough);
    answer.status = 404;
    EXPECT_EQ(message(download(answer)), "Download failed (HTTP 404).");
    EXPECT_TRUE(reports.empty());
}

TEST_F(ModelManagerFailureTest, ASmallBodyIsRefused)
{
    EXPECT_EQ(message(download({.body = "<p>Please log in</p>"})), "Download failed (HTTP 200).");
    EXPECT_EQ(message(download(Answer())), "Download failed (HTTP 200).");
}

TEST_F(ModelManagerFailureTest, ABodyOfExactlyOneHundredMillionBytesIsRefused)
{
    EXPECT_EQ(message(download(model(tooSmall))), "Download failed (HTTP 200).");
}

TEST_F(ModelManagerFailureTest, AContentLengthThatMakesTheBodyTooSmallDoesSo)
{
    Answer answer = model(bigEnough);
    answer.contentLength = 1000;
    EXPECT_EQ(message(download(answer)), "Download failed (HTTP 200).");
}

TEST_F(ModelManagerFailureTest, AConnectionLostInTheMiddleIsToldAsTheNetworkTellsIt)
{
    Answer answer = model(bigEnough + 1000);
    answer.cutAfter = bigEnough;
    EXPECT_EQ(message(download(answer)), "Connection closed.");
}

TEST_F(ModelManagerFailureTest, ABodyShorterThanItsContentLengthIsRefused)
{
    Answer answer = model(bigEnough);
    answer.contentLength = bigEnough + 1;
    EXPECT_EQ(message(download(answer)), "Connection closed.");
}

TEST_F(ModelManagerFailureTest, AChunkedBodyShorterThanItsContentLengthIsRefused)
{
    Answer answer = model(bigEnough);
    answer.framing = Framing::chunked;
    answer.contentLength = bigEnough + 1;
    EXPECT_EQ(message(download(answer)),
              "The connection was closed before the whole model had arrived.");
}

TEST_F(ModelManagerFailureTest, AChunkedBodyWithoutItsEndIsRefused)
{
    Answer answer = model(bigEnough + 1000);
    answer.framing = Framing::chunked;
    answer.cutAfter = bigEnough;
    EXPECT_EQ(downloadFromStalling(answer), "Connection closed.");
}

TEST_F(ModelManagerFailureTest, AServerThatClosesWithoutAnAnswerIsToldAsTheNetworkTellsIt)
{
    EXPECT_EQ(message(download({.raw = ""})), "Connection closed.");
    EXPECT_EQ(message(download({.raw = "HTTP/1.1 200 OK\r\nContent-Le"})), "Connection closed.");
}

TEST_F(ModelManagerFailureTest, ARefusedConnectionIsToldAsTheNetworkTellsIt)
{
    QTcpServer unused;
    ASSERT_TRUE(unused.listen(QHostAddress::LocalHost));
    QUrl address = server.url();
    address.setPort(unused.serverPort());
    unused.close();
    EXPECT_EQ(downloadFrom(address), "Connection refused.");
}

TEST_F(ModelManagerFailureTest, AServerThatCannotEncryptIsToldAsTheNetworkTellsIt)
{
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&] {
        QTcpSocket* socket = plain.nextPendingConnection();
        socket->write("220 Not what you think\r\n");
        socket->disconnectFromHost();
    });
    QUrl address = server.url();
    address.setScheme(QStringLiteral("https"));
    address.setPort(plain.serverPort());
    const std::string text = downloadFrom(address);
    EXPECT_TRUE(text.starts_with("SSL handshake failed")) << text;
    EXPECT_TRUE(text.ends_with('.')) << text;
}

TEST_F(ModelManagerFailureTest, AServerThatNeverAnswersIsGivenUp)
{
    EXPECT_EQ(downloadFromStalling({.stallAfter = 0, .raw = "never sent"}),
              "The download failed because the server does not answer.");
}

TEST_F(ModelManagerFailureTest, AServerThatStopsInTheMiddleIsGivenUp)
{
    Answer answer = model(bigEnough);
    answer.stallAfter = 3'000'000;
    EXPECT_EQ(downloadFromStalling(answer),
              "The download failed because the server does not answer.");
    EXPECT_EQ(reports.back().first, 3'000'000);
}

TEST_F(ModelManagerFailureTest, ARedirectInACircleIsGivenUp)
{
    EXPECT_EQ(message(download({.status = 302, .headers = {{"Location", "/model"}}})),
              "The download failed because of too many redirects.");
    EXPECT_EQ(server.requests().size(), 21u);
}

TEST_F(ModelManagerFailureTest, ARedirectToAnUnencryptedHostIsRefused)
{
    EXPECT_EQ(
        message(download({.status = 302, .headers = {{"Location", "http://model.example/"}}})),
        "The model is not downloaded over an unencrypted connection from model.example.");
}

TEST_F(ModelManagerFailureTest, ARedirectToSomethingElseThanTheWebIsRefused)
{
    EXPECT_EQ(message(download({.status = 302, .headers = {{"Location", "file:///etc/hostname"}}})),
              "The model cannot be downloaded from the address \"file:///etc/hostname\".");
}

TEST_F(ModelManagerFailureTest, AnUnencryptedAddressFromTheEnvironmentIsRefused)
{
    qputenv("PITHWISE_MODEL_URL", "http://model.example/model");
    const ModelManager::Options defaults;
    qunsetenv("PITHWISE_MODEL_URL");
    EXPECT_EQ(downloadFrom(defaults.address),
              "The model is not downloaded over an unencrypted connection from model.example.");
    EXPECT_EQ(published.front(), State(Downloading{0}));
}

TEST_F(ModelManagerFailureTest, AFolderThatCannotBeMadeIsNamedByItsCause)
{
    server.setAnswer("/model", model(bigEnough));
    ModelManager::Options blocked = options(server.url("/model"));
    blocked.path = path / "below a file" / "model";
    makeManager(blocked);
    EXPECT_EQ(message(download()), sentence("Could not write the model file", ENOTDIR));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(ModelManagerFailureTest, AFolderInThePlaceOfTheModelIsNamedByItsCause)
{
    server.setAnswer("/model", model(bigEnough));
    ModelManager::Options taken = options(server.url("/model"));
    taken.path = folder / "taken";
    std::filesystem::create_directory(taken.path);
    makeManager(taken);
    EXPECT_EQ(manager->state(), State(Idle()));
    EXPECT_EQ(message(download()), sentence("Could not move the model file into place", EISDIR));
}

TEST_F(ModelManagerFailureTest, ALimitOnFileSizesIsNamedAndDoesNotEndTheProcess)
{
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit lowered = before;
    lowered.rlim_cur = 10'000'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &lowered), 0);
    const std::string text = message(download(model(bigEnough)));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(text, sentence("Could not write the model file", EFBIG));
}

TEST_F(ModelManagerFailureTest, AFullDiskIsNamed)
{
    if (ChildTest::isChild()) {
        EXPECT_EQ(message(download(model(bigEnough))),
                  sentence("Could not write the model file", ENOSPC));
        return;
    }
    const std::vector<std::string> onSmallDisk =
        ChildTest::mounted("mount -t tmpfs -o size=10m tmpfs \"$0\"", temporary.path());
    if (onSmallDisk.empty())
        GTEST_SKIP() << "Name spaces for users are not to be had here.";
    EXPECT_EQ(ChildTest::repeat(temporary.path(), onSmallDisk), 0);
}
