#include "LoopbackServer.h"
#include "ProgramFixture.h"
#include "StandinModel.h"

namespace {

const QString modelName = "Qwen2.5-1.5B-Instruct-Q4_K_M.gguf";

class ModelCommandTest : public ProgramTest
{
protected:
    void SetUp() override { m_modelURL = m_server.url("/model").toString(); }

    QString modelFolder() const { return path("data/Pithwise"); }

    QStringList files() const { return QDir(modelFolder()).entryList(QDir::Files); }

    /// The bytes of a model that is large enough to be accepted and spells `text`.
    QByteArray largeModel(const std::string& text)
    {
        StandinModel::write({StandinModel::split(text)}, path("large.gguf").toStdString(),
                            100'000'001);
        QFile model(path("large.gguf"));
        EXPECT_TRUE(model.open(QIODevice::ReadOnly));
        return model.readAll();
    }

    LoopbackServer m_server;
};

TEST_F(ModelCommandTest, ThePathIsTheOneInTheDataFolder)
{
    const Result result = run({"model", "path"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, (modelFolder() + "/" + modelName + "\n").toStdString());
}

TEST_F(ModelCommandTest, AMissingModelIsReportedAndNotFetched)
{
    const Result result = run({"model", "status"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "The model is missing; \"pithwise model download\" fetches it.\n");
    EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(ModelCommandTest, SummarizingWithoutAModelDownloadsItFirst)
{
    m_server.setAnswer("/model", {.body = largeModel("It works.")});
    const Result first = run({"summarize", "-"}, "Some text.");
    EXPECT_EQ(first.output, "It works.\n");
    EXPECT_EQ(first.status, 0);
    EXPECT_TRUE(first.error.starts_with("Downloading the language model…\n10 % of 100 MB\n"));
    EXPECT_EQ(files(), QStringList(modelName));
    EXPECT_EQ(run({"model", "status"}).output, "The model is ready (100 MB).\n");
    EXPECT_EQ(run({"summarize", "-"}, "Some text.").error, "Loading model…\nSummarizing…\n");
    EXPECT_EQ(m_server.requests().size(), 1U);
}

TEST_F(ModelCommandTest, SummarizingAPageWithoutAModelFetchesBoth)
{
    m_server.setAnswer("/model", {.body = largeModel("It works.")});
    m_server.setAnswer("/page", {.body = "<p>" + QByteArray(100, 'x') + "</p>"});
    const Result result = run({"summarize", m_server.url("/page").toString()});
    EXPECT_EQ(result.output, "It works.\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ModelCommandTest, DownloadingReplacesADamagedFile)
{
    ASSERT_TRUE(QDir().mkpath(modelFolder()));
    file("data/Pithwise/" + modelName, "damaged");
    m_server.setAnswer("/model", {.body = QByteArray(1 << 20, 'x'), .size = 100'000'001});
    EXPECT_EQ(run({"model", "download"}).status, 0);
    EXPECT_EQ(QFile(modelFolder() + "/" + modelName).size(), 100'000'001);
    EXPECT_EQ(files(), QStringList(modelName));
}

TEST_F(ModelCommandTest, AFailedDownloadIsOneSentence)
{
    m_server.setAnswer("/model", {.status = 404});
    const Result result = run({"summarize", "-"}, "Some text.");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error,
              "Downloading the language model…\npithwise: Download failed (HTTP 404).\n");
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(ModelCommandTest, AnAddressThatIsRefusedIsOneSentence)
{
    m_modelURL = "http://model.example/file";
    const Result result = run({"model", "download"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "Downloading the language model…\npithwise: The model is not "
                            "downloaded over an unencrypted connection from model.example.\n");
}

TEST_F(ModelCommandTest, AnInterruptedDownloadLeavesNothing)
{
    m_server.setAnswer(
        "/model",
        {.body = QByteArray(1 << 20, 'x'), .size = 200'000'000, .stallAfter = 50'000'000});
    Program program;
    prepare(program);
    program.start({"model", "download"});
    ASSERT_TRUE(program.waitForError("20 % of 200 MB"));
    EXPECT_EQ(files().size(), 1);
    program.interrupt();
    EXPECT_EQ(program.finish(), 130);
    EXPECT_TRUE(files().isEmpty());
}

} // namespace
