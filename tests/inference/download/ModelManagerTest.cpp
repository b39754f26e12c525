#include "ModelManager.h"

#include "ModelManagerFixture.h"

#include <QDeadlineTimer>
#include <QNetworkProxy>

#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;

class ModelManagerTest : public ModelManagerFixture
{
protected:
    bool isUnderWay() const { return !reports.empty(); }

    /// Begins a transfer that has brought some bytes and will bring no more until `release`.
    void startAndStall()
    {
        Answer answer = model(bigEnough);
        answer.stallAfter = 5'000'000;
        server.setAnswer("/model", answer);
        makeManager();
        manager->start();
        ASSERT_TRUE(waitUntil([this] { return isUnderWay(); }));
    }
};

TEST_F(ModelManagerTest, TheModelLiesInTheFolderOfModelFile)
{
    EXPECT_EQ(ModelManager::directory(), ModelFile::directory());
    EXPECT_EQ(ModelManager::Options().path, ModelFile::path());
}

TEST_F(ModelManagerTest, TheAddressComesFromTheBuildOptions)
{
    EXPECT_EQ(ModelManager::modelURL().toString().toStdString(),
              "https://huggingface.co/bartowski/Qwen2.5-1.5B-Instruct-GGUF/resolve/main/"
              "Qwen2.5-1.5B-Instruct-Q4_K_M.gguf");
}

TEST_F(ModelManagerTest, ThereIsOneManagerForAll)
{
    EXPECT_EQ(&ModelManager::shared(), &ModelManager::shared());
    EXPECT_EQ(ModelManager::shared().state(), State(Idle()));
}

TEST_F(ModelManagerTest, StatesAreEqualIfTheirContentsAre)
{
    EXPECT_EQ(State(Downloading{0.5}), State(Downloading{0.5}));
    EXPECT_NE(State(Downloading{0.5}), State(Downloading{0.25}));
    EXPECT_EQ(State(Failed{"a"}), State(Failed{"a"}));
    EXPECT_NE(State(Failed{"a"}), State(Failed{"b"}));
    EXPECT_NE(State(Idle()), State(Ready()));
}

TEST_F(ModelManagerTest, WithoutAFileItIsIdleAndMakesNoRequest)
{
    makeManager();
    EXPECT_EQ(manager->state(), State(Idle()));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(ModelManagerTest, WithAFileItIsReadyFromTheStartAndMakesNoRequest)
{
    writeModel("any content");
    makeManager();
    EXPECT_EQ(manager->state(), State(Ready()));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(ModelManagerTest, StartingIsSeenAtOnce)
{
    makeManager();
    manager->start();
    EXPECT_THAT(published, ElementsAre(State(Downloading{0})));
    outcome();
}

TEST_F(ModelManagerTest, ABodyOfOneByteMoreThanOneHundredMillionBecomesTheModel)
{
    EXPECT_EQ(download(model(bigEnough)), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(ModelManagerTest, TheRequestIsPlain)
{
    download(Answer{.status = 404, .headers = {{"Set-Cookie", "a=b"}}});
    download();
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    for (const LoopbackServer::Request& request : requests) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.path, "/model");
        EXPECT_EQ(request.headers.value("accept-encoding"), "identity");
        EXPECT_EQ(request.headers.value("user-agent"), "Pithwise");
        EXPECT_FALSE(request.headers.contains("cookie"));
        EXPECT_FALSE(request.headers.contains("range"));
    }
}

TEST_F(ModelManagerTest, ProgressGrowsFromNoneToAll)
{
    download(model(bigEnough));
    ASSERT_GE(published.size(), 4u);
    EXPECT_EQ(published.front(), State(Downloading{0}));
    EXPECT_EQ(published.back(), State(Ready()));
    double last = 0;
    for (auto state = published.begin() + 1; state != published.end() - 1; ++state) {
        ASSERT_TRUE(std::holds_alternative<Downloading>(*state));
        const double progress = std::get<Downloading>(*state).progress;
        EXPECT_GT(progress, last);
        last = progress;
    }
    EXPECT_EQ(last, 1);
}

TEST_F(ModelManagerTest, EveryReportOfBytesGoesWithAState)
{
    download(model(bigEnough));
    ASSERT_EQ(reports.size(), published.size() - 2);
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const auto [received, expected] = reports[i];
        EXPECT_EQ(expected, bigEnough);
        EXPECT_EQ(published[i + 1], State(Downloading{double(received) / double(expected)}));
    }
}

TEST_F(ModelManagerTest, WithoutALengthThereIsNoProgressUntilTheEnd)
{
    for (const Framing framing : {Framing::closeDelimited, Framing::chunked}) {
        Answer answer = model(bigEnough);
        answer.framing = framing;
        published.clear();
        reports.clear();
        EXPECT_EQ(download(answer), State(Ready()));
        EXPECT_TRUE(modelIsPattern(bigEnough));
        EXPECT_THAT(published, ElementsAre(State(Downloading{0}), State(Ready())));
        EXPECT_EQ(reports.back(), std::make_pair(bigEnough, qint64{-1}));
    }
}

TEST_F(ModelManagerTest, ABodyBeyondItsContentLengthEndsThere)
{
    Answer answer = model(bigEnough + 5000);
    answer.contentLength = bigEnough;
    EXPECT_EQ(download(answer), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(ModelManagerTest, TheModelIsInPlaceOnlyWhenItIsComplete)
{
    startAndStall();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(partFiles().size(), 1u);
    server.release();
    EXPECT_EQ(outcome(), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(ModelManagerTest, AFolderThatIsMissingIsMade)
{
    std::filesystem::remove(folder);
    EXPECT_EQ(download(model(bigEnough)), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(ModelManagerTest, StartingWhileReadyReplacesTheModelEvenIfItIsReadOnly)
{
    writeModel("old model");
    ASSERT_EQ(::chmod(path.c_str(), 0400), 0);
    EXPECT_EQ(download(model(bigEnough)), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
    EXPECT_EQ(download(model(bigEnough + 1)), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough + 1));
}

TEST_F(ModelManagerTest, StartingAgainDropsTheFirstTransferSilently)
{
    startAndStall();
    server.setAnswer("/model", {.status = 404});
    published.clear();
    manager->start();
    server.release();
    EXPECT_EQ(outcome(), State(Failed{"Download failed (HTTP 404)."}));
    EXPECT_THAT(published,
                ElementsAre(State(Downloading{0}), State(Failed{"Download failed (HTTP 404)."})));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(ModelManagerTest, ResultsOnTheirWayFromADroppedTransferAreNotPublished)
{
    server.setAnswer("/model", model(bigEnough));
    makeManager();
    manager->start();
    // Without the event loop: the whole transfer is over, and nothing of it has been heard.
    const QDeadlineTimer deadline(std::chrono::seconds(60));
    while (!std::filesystem::exists(path) && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    server.setAnswer("/model", {.status = 404});
    manager->start();
    EXPECT_EQ(outcome(), State(Failed{"Download failed (HTTP 404)."}));
    EXPECT_THAT(published, ElementsAre(State(Downloading{0}), State(Downloading{0}),
                                       State(Failed{"Download failed (HTTP 404)."})));
    EXPECT_TRUE(reports.empty());
}

TEST_F(ModelManagerTest, WhoeverHearsOfAFailureMayStartAgainAtOnce)
{
    server.setAnswer("/model", {.status = 500});
    makeManager();
    QObject::connect(manager.get(), &ModelManager::stateChanged, manager.get(), [this] {
        if (published.size() == 2)
            manager->start();
    });
    manager->start();
    ASSERT_TRUE(waitUntil([this] { return published.size() == 4; }));
    EXPECT_EQ(published[2], State(Downloading{0}));
    EXPECT_EQ(published[3], State(Failed{"Download failed (HTTP 500)."}));
}

TEST_F(ModelManagerTest, RedirectsAreFollowed)
{
    server.setAnswer("/model",
                     {.status = 302, .headers = {{"Location", "b?c=d"}}, .body = "moved"});
    const QByteArray absolute = server.url("/e").toEncoded();
    server.setAnswer("/b?c=d", {.status = 307, .headers = {{"Location", absolute}}});
    server.setAnswer("/e", model(bigEnough));
    makeManager();
    EXPECT_EQ(download(), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
    EXPECT_EQ(server.requests().size(), 3u);
}

TEST_F(ModelManagerTest, ThisComputerIsReachedWithoutTheProxy)
{
    const QNetworkProxy before = QNetworkProxy::applicationProxy();
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 1));
    EXPECT_EQ(download({.status = 404}), State(Failed{"Download failed (HTTP 404)."}));
    QNetworkProxy::setApplicationProxy(before);
}

TEST_F(ModelManagerTest, DestructionDuringATransferRemovesItsFile)
{
    startAndStall();
    EXPECT_EQ(partFiles().size(), 1u);
    manager.reset();
    EXPECT_TRUE(partFiles().empty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(ModelManagerTest, DestructionIsCleanAtAnyMoment)
{
    server.setAnswer("/model", model(bigEnough));
    for (const std::size_t publications : {1u, 2u, 3u, 10u, 50u}) {
        published.clear();
        makeManager();
        manager->start();
        ASSERT_TRUE(waitUntil([&] { return published.size() >= publications || hasEnded(); }));
        manager.reset();
        EXPECT_TRUE(partFiles().empty());
    }
}

TEST_F(ModelManagerTest, DestructionDoesNotWaitForAServerThatIsSilent)
{
    server.setAnswer("/model", {.stallAfter = 0, .raw = "never sent"});
    ModelManager::Options patient = options(server.url("/model"));
    patient.stallLimit = std::chrono::hours(1); // so that it never gives up by itself
    makeManager(patient);
    manager->start();
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 1; }));
    manager.reset();
}

TEST_F(ModelManagerTest, WhatAKilledProcessHasLeftIsRemoved)
{
    const std::filesystem::path abandoned = path.string() + ".0123456789abcdef.part";
    std::filesystem::copy_file("/proc/self/cmdline", abandoned);
    ASSERT_EQ(partFiles().size(), 1u);
    download({.status = 404});
    EXPECT_FALSE(std::filesystem::exists(abandoned));
}

TEST_F(ModelManagerTest, TheFileOfAnotherTransferUnderWayStays)
{
    startAndStall();
    const std::set<std::string> theirs = partFiles();
    ASSERT_EQ(theirs.size(), 1u);

    server.setAnswer("/other", {.status = 404});
    ModelManager other(options(server.url("/other")));
    other.start();
    const State failed = Failed{"Download failed (HTTP 404)."};
    ASSERT_TRUE(waitUntil([&] { return other.state() == failed; }));
    EXPECT_EQ(partFiles(), theirs);

    server.release();
    EXPECT_EQ(outcome(), State(Ready()));
    EXPECT_TRUE(modelIsPattern(bigEnough));
}

TEST_F(ModelManagerTest, TheSharedManagerLeavesNoFileBehindWhenTheProgramEnds)
{
    const std::filesystem::path sharedFolder = folder / "Pithwise";
    if (ChildTest::isChild()) {
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.string()));
        ModelManager::shared().start();
        EXPECT_TRUE(waitUntil([&] { return partFilesIn(sharedFolder).size() == 1; }));
        return;
    }
    server.setAnswer("/model", {.body = "x", .size = bigEnough, .stallAfter = 1000});
    qputenv("PITHWISE_MODEL_URL", server.url("/model").toEncoded());
    EXPECT_EQ(ChildTest::repeat(temporary.path()), 0);
    qunsetenv("PITHWISE_MODEL_URL");
    EXPECT_TRUE(std::filesystem::exists(sharedFolder));
    EXPECT_TRUE(partFilesIn(sharedFolder).empty());
}
