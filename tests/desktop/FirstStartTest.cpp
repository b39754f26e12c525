#include "LoopbackServer.h"
#include "ReaderFixture.h"

#include <QDir>
#include <QFile>

namespace {

/// The application without a model on the disk and with one on a server.
class FirstStartTest : public ReaderFixture
{
protected:
    FirstStartTest()
    {
        QFile file(standin());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        // What follows the first one in the file is never read.
        m_model.body = file.readAll();
        m_model.size = size;
    }

    QProcess& launchFirst()
    {
        return launchToReadOn({}, {"PITHWISE_MODEL_URL=" + m_server.url("/model").toString()});
    }

    /// Launches it, with the popover shown and so many bytes of the model there.
    QProcess& launchStalledAfter(qint64 bytes)
    {
        m_model.stallAfter = bytes;
        m_server.setAnswer("/model", m_model);
        QProcess& process = launchFirst();
        showSetup();
        waitForPercent(static_cast<int>(bytes * 100 / size));
        return process;
    }

    /// Opens the popover, in which nothing may have the focus yet.
    void showSetup()
    {
        toggle();
        waitUntilShown();
        waitUntilInFront(popover());
        m_reader.find("label", "Setting up the on-device model");
    }

    void waitForPercent(int percent)
    {
        m_reader.find("label", std::to_string(percent) + "%");
        const ScreenReader::Node bar = m_reader.find("progress bar", "Download of the model");
        EXPECT_EQ(m_reader.value(bar), percent);
    }

    void waitForFailure(const std::string& sentence)
    {
        m_reader.find("text", sentence);
        EXPECT_FALSE(m_reader.lookFor("progress bar", "Download of the model"));
        EXPECT_EQ(m_folder.entryList(QDir::Files), QStringList());
    }

    /// Has the model that is there summarise a text.
    void summarize()
    {
        enter("Some text.");
        pressButton("Summarize");
        waitForSummary();
    }

    static constexpr qint64 size = 120'000'000;

    LoopbackServer m_server;
    LoopbackServer::Answer m_model;
    const QDir m_folder{m_session.path("home/.local/share/Pithwise")};
    const QStringList m_whole = {"Qwen2.5-1.5B-Instruct-Q4_K_M.gguf"};
};

TEST_F(FirstStartTest, TheDownloadIsShownAndWhatCameIsUsed)
{
    launchStalledAfter(size / 4);
    m_server.release(size / 2);
    waitForPercent(50);
    ASSERT_EQ(m_folder.entryList(QDir::Files).size(), 1);
    EXPECT_TRUE(m_folder.entryList(QDir::Files).front().endsWith(".part"));
    m_server.release();
    summarize();
    EXPECT_EQ(m_folder.entryList(QDir::Files), m_whole);
    EXPECT_EQ(QFile(m_folder.filePath(m_whole.front())).size(), size);
}

TEST_F(FirstStartTest, TheSecondStartDownloadsNothing)
{
    m_server.setAnswer("/model", m_model);
    QProcess& first = launchFirst();
    show();
    waitUntilFocused("text", "Text to summarize");
    m_session.end(first);
    launchFirst();
    show();
    summarize();
    EXPECT_EQ(m_server.requests().size(), 1U);
    EXPECT_EQ(m_folder.entryList(QDir::Files), m_whole);
}

TEST_F(FirstStartTest, AServerThatRefusesIsASentenceAndRetryStartsOver)
{
    m_server.setAnswer("/model", {.status = 503});
    launchFirst();
    show();
    waitForFailure("Download failed (HTTP 503).");
    waitUntilFocused("push button", "Retry");
    m_model.stallAfter = size / 4;
    m_server.setAnswer("/model", m_model);
    press({"Return"});
    waitForPercent(25);
    EXPECT_FALSE(m_reader.lookFor("text", "Download failed (HTTP 503)."));
    m_server.release();
    summarize();
    EXPECT_EQ(m_folder.entryList(QDir::Files), m_whole);
}

TEST_F(FirstStartTest, ADownloadThatIsCutLeavesNothingAndRetryStartsOver)
{
    m_model.cutAfter = size / 2;
    launchStalledAfter(size / 4);
    m_server.release();
    waitForFailure("Connection closed.");
    m_model.cutAfter.reset();
    m_model.stallAfter.reset();
    m_server.setAnswer("/model", m_model);
    pressButton("Retry");
    summarize();
    EXPECT_EQ(m_folder.entryList(QDir::Files), m_whole);
}

TEST_F(FirstStartTest, APageInPlaceOfTheModelIsRefused)
{
    m_server.setAnswer("/model", {.body = "<p>Log in</p>"});
    launchFirst();
    show();
    waitForFailure("Download failed (HTTP 200).");
}

TEST_F(FirstStartTest, TheNextStartTriesAgainByItself)
{
    m_server.setAnswer("/model", {.status = 503});
    QProcess& first = launchFirst();
    show();
    waitForFailure("Download failed (HTTP 503).");
    m_session.end(first);
    m_server.setAnswer("/model", m_model);
    launchFirst();
    show();
    summarize();
}

TEST_F(FirstStartTest, AFileThatIsNoModelIsAnErrorOfTheRun)
{
    m_model.body = "no model";
    m_server.setAnswer("/model", m_model);
    launchFirst();
    show();
    enter("Some text.");
    pressButton("Summarize");
    m_reader.find("text", "Could not load the language model.");
    waitUntilEnabled("Summarize");
}

TEST_F(FirstStartTest, QuittingDuringTheDownloadLeavesNothing)
{
    QProcess& process = launchStalledAfter(size / 4);
    pressButton("Quit");
    m_session.waitForEnd(process);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(complaints(process), "");
    EXPECT_EQ(m_folder.entryList(QDir::Files), QStringList());
}

TEST_F(FirstStartTest, TheHotkeysTextWaitsForTheModel)
{
    m_model.stallAfter = size / 4;
    m_server.setAnswer("/model", m_model);
    launchFirst();
    startApp({"--editor", "Some text to select."});
    press({"ctrl+a", "ctrl+alt+s"});
    waitUntilShown();
    waitForPercent(25);
    m_server.release();
    m_reader.find("text", "The language model is still downloading.");
    m_reader.find("label", "Selected text · 4 words");
    EXPECT_EQ(source(), "Some text to select.");
    pressButton("Summarize");
    waitForSummary();
}

} // namespace
