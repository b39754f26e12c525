#include "ReaderFixture.h"

#include <QFile>

#include <unistd.h>

namespace {

/// Runs of the model: what starts one, what ends one, and what is shown meanwhile.
class RunTest : public ReaderFixture
{
protected:
    /// Has the popover show a summary of some text.
    void summarize()
    {
        show();
        enter("Some text.");
        pressButton("Summarize");
        waitForSummary();
        waitUntilTold(m_told);
        m_reader.forgetEvents();
    }

    /// Launches on a slow model that has yet to be loaded, and starts a run of a text.
    QProcess& launchRunOf(const QByteArray& text)
    {
        QProcess& process = launchToReadOn(slowModel(slow));
        m_clipboard.put(text);
        show();
        pressButton("Use Clipboard");
        return process;
    }

    /// What processors have worked for the application so far, in seconds: of that other programs
    /// take nothing away.
    double work() const
    {
        QFile file(QString("/proc/%1/stat").arg(m_process->processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArrayList fields = file.readAll().split(')').last().split(' ');
        return (fields.at(12).toDouble() + fields.at(13).toDouble()) /
               static_cast<double>(::sysconf(_SC_CLK_TCK));
    }

    /// What it takes until there are the first words of a summary that the button starts.
    double workUntilFirstWords(const std::string& button)
    {
        waitUntilEnabled(button);
        const double before = work();
        pressButton(button);
        m_session.waitUntil("the first words", [this] { return !summaryIfAny().empty(); });
        return work() - before;
    }

    /// Launches on a slow model, and returns when there is a part of its answer, which is of 260
    /// bytes in the end.
    QProcess& launchAnswering()
    {
        QProcess& process = launchToReadOn(slowModel(slow));
        show();
        enter("Some text.");
        choose("Actions");
        pressButton("Summarize");
        m_session.waitUntil("the first words", [this] { return !summaryIfAny().empty(); });
        return process;
    }

    /// Whether the application is back to where a run can be started.
    void expectStopped()
    {
        waitUntilEnabled("Summarize");
        EXPECT_FALSE(m_reader.lookFor("push button", "Stop"));
        EXPECT_FALSE(m_reader.lookFor("label", "Summarizing…"));
    }

    void stopAndClear()
    {
        clickOn("Stop");
        expectStopped();
        clickOn("Clear");
    }

    /// In a quiet moment: what was asked for has reached the application by now, and of a run it
    /// would have told something.
    void expectNoRun()
    {
        ASSERT_TRUE(isAnswering());
        ASSERT_TRUE(isAnswering());
        QCoreApplication::processEvents();
        for (const ScreenReader::Event& event : m_reader.events())
            EXPECT_NE(event.source.role, "notification") << event.source.name;
        EXPECT_TRUE(m_reader.lookFor("push button", "Summarize"));
    }

    void moveSlider(const QString& key, const std::string& length)
    {
        const ScreenReader::Node slider = m_reader.find("slider", "Length");
        m_reader.perform(slider, "SetFocus");
        waitUntilFocused("slider", "Length");
        press({key});
        m_session.waitUntil(
            "the length", [&] { return m_reader.find("slider", "Length").description == length; });
    }

    void clickOn(const std::string& name, const std::string& role = "push button")
    {
        click(m_reader.find(role, name).area.center());
    }

    void quit(QProcess& process)
    {
        clickOn("Quit");
        waitForEndDuringWork(process);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(complaints(process), "");
    }

    /// How many bytes the answer of the slow model has in the end. Each of them is a token, so
    /// that is what the kind and the length of the summary allow.
    qsizetype sizeWhenDone()
    {
        const QByteArray other = "another program's";
        m_clipboard.put(other);
        pressButton("Copy Markdown");
        QByteArray copied;
        m_session.waitUntil("the copy", [&] {
            copied = m_clipboard.text();
            return !copied.isEmpty() && copied != other;
        });
        return copied.size();
    }

    /// The same of a run that this starts.
    qsizetype sizeAfter(const std::function<void()>& change)
    {
        const std::string before = summaryIfAny();
        change();
        m_session.waitUntil("another summary", [&] {
            const std::string text = summaryIfAny();
            return !text.empty() && text != before;
        });
        return sizeWhenDone();
    }

    std::string summaryIfAny()
    {
        const auto node = m_reader.lookFor("label", "Summary");
        return node ? m_reader.text(*node) : std::string();
    }

    // So that it takes seconds until there are the first words.
    const QByteArray m_longText = QByteArray(7'400, '7');
    const std::string m_told = "Summary: • The takeaway.";
};

/// Those that keep the processors busy, and that want one to themselves: a model that has to share
/// them with others takes many times as long.
using LongRunTest = RunTest;

TEST_F(RunTest, TheMouseAloneIsEnough)
{
    QProcess& process = launchToRead();
    m_clipboard.put("Some copied text.");
    show();
    clickOn("Web", "radio button");
    m_reader.find("text", "Web address");
    clickOn("Clipboard", "radio button");
    clickOn("Use Clipboard");
    waitUntilTold(m_told);
    for (const auto& [role, name] :
         {std::pair{"radio button", "TL;DR"}, {"push button", "Summarize"}}) {
        m_reader.forgetEvents();
        clickOn(name, role);
        waitUntilTold(m_told);
    }
    m_reader.forgetEvents();
    const QRect slider = m_reader.find("slider", "Length").area;
    click({slider.right() - 5, slider.center().y()});
    waitUntilTold(m_told);
    EXPECT_EQ(m_reader.find("slider", "Length").description, "Detailed");
    clickOn("Copy Markdown");
    waitUntilTold("Markdown copied");
    EXPECT_EQ(m_clipboard.text(), "- The takeaway.");
    clickOn("Quit");
    m_session.waitForEnd(process);
}

TEST_F(RunTest, AnotherKindSummarizesAgain)
{
    launchToRead();
    summarize();
    choose("Executive");
    waitUntilTold(m_told);
    waitUntilEnabled("Copy Markdown");
}

TEST_F(RunTest, AnotherLengthSummarizesAgain)
{
    launchToRead();
    summarize();
    moveSlider("Right", "Detailed");
    waitUntilTold(m_told);
    waitUntilEnabled("Copy Markdown");
}

TEST_F(RunTest, TheSameKindOnceMoreIsNoChange)
{
    launchToRead();
    summarize();
    m_reader.perform(m_reader.find("radio button", "3 Bullets"), "Toggle");
    expectNoRun();
}

TEST_F(RunTest, WithoutASummaryAChangeStartsNothing)
{
    launchToRead();
    show();
    enter("Some text.");
    m_reader.forgetEvents();
    choose("Actions");
    moveSlider("Left", "Brief");
    expectNoRun();
    m_reader.find("label", "Your summary will appear here.");
}

TEST_F(LongRunTest, AChangeMakesASummaryOfThatKindAndLength)
{
    launchToReadOn(slowModel());
    show();
    enter("Some text.");
    moveSlider("Left", "Brief");
    EXPECT_EQ(sizeAfter([this] { pressButton("Summarize"); }), 110);
    EXPECT_EQ(sizeAfter([this] { choose("TL;DR"); }), 60);
    EXPECT_EQ(sizeAfter([this] { moveSlider("Right", "Balanced"); }), 110);
}

TEST_F(LongRunTest, AChangeDuringARunDoesNotStartAnother)
{
    launchAnswering();
    choose("TL;DR"); // which is shorter
    EXPECT_EQ(sizeWhenDone(), 260);
}

TEST_F(LongRunTest, StopWhileSectionsAreRead)
{
    launchRunOf(QByteArray(60'000, 'x'));
    m_reader.find("label", "Reading part 1 of 10…");
    clickOn("Stop");
    expectStopped();
    m_reader.find("label", "Your summary will appear here.");
    EXPECT_FALSE(m_reader.find("push button", "Copy Markdown").is(ScreenReader::enabled));
}

TEST_F(LongRunTest, StopInTheMiddleOfTheText)
{
    launchToReadOn(slowModel({12, 512, 1024, 8, 2})); // so that the text takes it some seconds
    m_clipboard.put(m_longText);
    show();
    const double whole = workUntilFirstWords("Use Clipboard");
    stopAndClear();
    m_clipboard.put(m_longText);
    pressButton("Use Clipboard");
    m_reader.find("label", "Summarizing…");
    stopAndClear();
    m_reader.find("label", "Your summary will appear here.");
    // The model takes one text at a time, so it is the next one's turn when this has ended.
    m_clipboard.put("Some text.");
    EXPECT_LT(workUntilFirstWords("Use Clipboard"), whole / 2);
}

TEST_F(LongRunTest, StopInTheMiddleOfTheAnswerKeepsWhatIsThere)
{
    launchAnswering();
    EXPECT_FALSE(m_reader.find("push button", "Copy Markdown").is(ScreenReader::enabled));
    m_reader.find("label", "Summarizing…"); // below the buttons now
    clickOn("Stop");
    expectStopped();
    const std::string part = summary();
    EXPECT_FALSE(part.empty());
    EXPECT_LT(part.size(), 250U); // of 260
    pressButton("Copy Markdown");
    waitUntilTold("Markdown copied");
    EXPECT_FALSE(m_clipboard.text().isEmpty());
    EXPECT_EQ(summary(), part);
}

TEST_F(LongRunTest, AfterAStopARunCanBeStartedAgain)
{
    launchAnswering();
    clickOn("Stop");
    expectStopped();
    m_reader.forgetEvents();
    pressButton("Summarize");
    waitUntilTold("Summarizing…");
    clickOn("Stop");
    expectStopped();
}

TEST_F(LongRunTest, QuitDoesNotWaitUntilTheModelIsLoaded)
{
    QProcess& process = launchRunOf(longText().toLatin1());
    m_reader.find("label", "Reading part 1 of 10…");
    quit(process);
}

TEST_F(LongRunTest, QuitDoesNotWaitUntilATextIsRead)
{
    QProcess& process = launchAnswering(); // so that the model is there
    stopAndClear();
    m_clipboard.put(longText().toLatin1());
    pressButton("Use Clipboard");
    m_reader.find("label", "Reading part 1 of 10…");
    quit(process);
}

// An answer is written in seconds. That it is not waited for either is tried where one has no end.
TEST_F(LongRunTest, QuitWhileAnAnswerIsWritten)
{
    QProcess& process = launchAnswering();
    quit(process);
}

TEST_F(LongRunTest, ASecondStartDuringARunHidesAndShowsThePopoverOnly)
{
    launchAnswering();
    moveSlider("Left", "Brief"); // of which another run would be
    EXPECT_EQ(run({}), 0) << m_error;
    waitUntilHidden();
    EXPECT_EQ(run({}), 0) << m_error;
    waitUntilShown();
    EXPECT_EQ(sizeWhenDone(), 260);
}

TEST_F(RunTest, ARunThatFailsIsOneSentenceAndGoesWithTheNext)
{
    QFile file(m_session.path("damaged.gguf"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no model") > 0);
    file.close();
    launchToReadOn(file.fileName());
    show();
    enter("Some text.");
    pressButton("Summarize");
    m_reader.find("text", "Could not load the language model.");
    waitUntilEnabled("Summarize");
    ASSERT_TRUE(file.remove() && QFile::copy(standin(), file.fileName()));
    pressButton("Summarize");
    waitForSummary();
    EXPECT_FALSE(m_reader.lookFor("text", "Could not load the language model."));
}

TEST_F(LongRunTest, ALaterTextSupersedesTheRunOfAnEarlierOne)
{
    launchAnswering();
    m_clipboard.put("Three other words.");
    moveSlider("Left", "Brief");
    pressButton("Use Clipboard");
    m_reader.find("label", "Clipboard · 3 words");
    EXPECT_EQ(sizeWhenDone(), 120);
}

} // namespace
