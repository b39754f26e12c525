#include "BenchModel.h"
#include "ProgramFixture.h"
#include "StandinModel.h"

namespace {

class SummarizeCommandTest : public ProgramTest
{
protected:
    QString standin(const StandinModel::Script& script)
    {
        StandinModel::write(script, path("standin.gguf").toStdString());
        return path("standin.gguf");
    }

    /// A model that takes a few milliseconds a token and never ends, so that there is time to
    /// interrupt it.
    QString slowModel()
    {
        BenchModel::write(path("slow.gguf").toStdString(), {1, 256, 256, 4, 2});
        return path("slow.gguf");
    }

    const std::string m_script = "- The first takeaway.\n- The second.\n- A naïve third 👩.";
};

TEST_F(SummarizeCommandTest, TheSummaryIsPrintedWholeIntoAPipe)
{
    const Result result = run(
        {"summarize", "--model", standin({StandinModel::split("\n " + m_script + "\n\n")}), "-"},
        "Some text.");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, m_script + "\n");
    EXPECT_EQ(result.error, "Loading model…\nSummarizing…\n");
}

TEST_F(SummarizeCommandTest, ALongFileIsReadInSections)
{
    const QString source = file("long.txt", QByteArray(7501, 'x'));
    const Result result =
        run({"summarize", "--model", standin({StandinModel::split(m_script)}), source});
    EXPECT_EQ(result.output, m_script + "\n");
    EXPECT_EQ(result.error,
              "Loading model…\nReading part 1 of 2…\nReading part 2 of 2…\nSummarizing…\n");
}

TEST_F(SummarizeCommandTest, ATerminalGetsTheSummaryWithoutItsControlCodes)
{
    const QString model =
        standin({{{"one"}, {"\x1B[31m"}, {" two\t"}, {"\a"}, {"\u009Bm"}, {" three"}}});
    const Result terminal =
        run({"summarize", "--model", model, "-"}, "Some text.", Program::Output::terminal);
    EXPECT_EQ(terminal.output, "one[31m two\tm three\r\n");
    EXPECT_EQ(run({"summarize", "--model", model, "-"}, "Some text.").output,
              "one\x1B[31m two\t\a\u009Bm three\n");
}

TEST_F(SummarizeCommandTest, AnInterruptKeepsTheTextSoFar)
{
    Program program(Program::Output::terminal);
    prepare(program);
    program.start(
        {"summarize", "--mode", "actions", "--length", "detailed", "--model", slowModel(), "-"},
        "Some text.");
    ASSERT_TRUE(program.waitForOutput());
    program.interrupt();
    EXPECT_EQ(program.finish(), 130);
    EXPECT_GT(program.output().size(), 0);
    EXPECT_LT(program.output().size(), 520);
    EXPECT_TRUE(program.output().endsWith("\r\n"));
    EXPECT_EQ(program.error().toStdString(), "Loading model…\nSummarizing…\n");
}

TEST_F(SummarizeCommandTest, AnInterruptWhileSectionsAreReadPrintsNothing)
{
    Program program;
    prepare(program);
    program.start({"summarize", "--model", slowModel(), "-"}, QByteArray(60'000, 'x'));
    ASSERT_TRUE(program.waitForError("Reading part 1 of"));
    program.interrupt();
    EXPECT_EQ(program.finish(), 130);
    EXPECT_EQ(program.output().toStdString(), "");
}

TEST_F(SummarizeCommandTest, ADamagedModelIsAnErrorInOneSentence)
{
    const Result result =
        run({"summarize", "--model", file("damaged.gguf", "GGUF is not all"), "-"}, "Some text.");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error,
              "Loading model…\nSummarizing…\npithwise: Could not load the language model.\n");
}

} // namespace
