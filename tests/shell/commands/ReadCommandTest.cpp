#include "CoreDumpLimit.h"
#include "LoopbackServer.h"
#include "ProgramFixture.h"
#include "StandinModel.h"

#include <QDeadlineTimer>
#include <QThread>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

class ReadCommandTest : public ProgramTest
{
protected:
    QString address(const QByteArray& path = "/") const { return m_server.url(path).toString(); }

    void servePage(const QByteArray& path = "/")
    {
        m_server.setAnswer(path, {.body = "<html><head><title>Foxes</title></head><body>\n<p>" +
                                          m_paragraph + "</p>\n</body></html>"});
    }

    const QByteArray m_paragraph =
        QByteArray("The quick brown fox jumps over the lazy dog. ").repeated(3).trimmed();
    const std::string m_page = "Foxes\n\n" + m_paragraph.toStdString();
    LoopbackServer m_server;
};

TEST_F(ReadCommandTest, AFileIsPrintedAsItIs)
{
    for (const QByteArray& text :
         {QByteArray("text\n"), QByteArray(" \r\n text\t\n\n\n"), QByteArray("a\0\x1B[31m\n", 8),
          QByteArray("\xEF\xBB\xBFGrüße aus 東京\n")}) {
        const Result result = run({"read", file("source", text)});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, text.toStdString());
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(ReadCommandTest, NoCoreDumpHoldsTheText)
{
    if (!allowCoreDumps())
        GTEST_SKIP() << "There are no core dumps here.";
    EXPECT_THAT(run({"read", "/proc/self/limits"}).output,
                testing::ContainsRegex("Max core file size +0 "));
}

#ifndef PITHWISE_SANITIZED
TEST_F(ReadCommandTest, WhoeverReadsADocumentHasALimitedMemory)
{
    EXPECT_THAT(run({"read", "/proc/self/limits"}).output,
                testing::ContainsRegex("Max data size +4294967296 "));
}
#endif

TEST_F(ReadCommandTest, AMissingLineFeedAtTheEndIsAdded)
{
    EXPECT_EQ(run({"read", file("source", "text")}).output, "text\n");
    EXPECT_EQ(run({"read", file("source", "text\r")}).output, "text\r\n");
}

TEST_F(ReadCommandTest, StandardInputIsRead)
{
    EXPECT_EQ(run({"read", "-"}, "caf\xE9").output, "café\n");
    EXPECT_EQ(run({"read", "/dev/stdin"}, "caf\xE9").output, "café\n");
}

TEST_F(ReadCommandTest, ALargeTextIsPrintedWhole)
{
    const QByteArray text = QByteArray("Grüße aus 東京\n").repeated(200'000);
    EXPECT_EQ(run({"read", file("source", text)}).output, text.toStdString());
}

TEST_F(ReadCommandTest, ATerminalGetsTheTextWithoutItsControlCodes)
{
    const QString source = file("source", "one\x1B[31m two\t\a\xC2\x9Bm three\x7F\x1B");
    EXPECT_EQ(run({"read", source}, {}, Program::Output::terminal).output,
              "one[31m two\tm three\r\n");
}

TEST_F(ReadCommandTest, ATerminalGetsNothingThatTurnsTheTextAround)
{
    const QString source = file("source", "pay \u202E001\u202C, \u2066\u2067a\u2069 \u200Fb\n");
    EXPECT_EQ(run({"read", source}, {}, Program::Output::terminal).output,
              "pay 001, a \u200Fb\r\n");
    EXPECT_EQ(run({"read", source}).output, "pay \u202E001\u202C, \u2066\u2067a\u2069 \u200Fb\n");
}

TEST_F(ReadCommandTest, WhatCannotBeReadIsAnErrorInOneSentence)
{
    for (const auto& [source, sentence] : std::initializer_list<std::pair<QString, std::string>>{
             {"no such file.txt", "There is no file named no such file.txt."},
             {m_folder.path(), "Unsupported file type."},
             {m_folder.path() + "/", "Unsupported file type."},
             {file("blank.txt", " \n"), "No text found in blank.txt."},
             {file("blank.txt", " \n") + "/",
              "There is no file named " + path("blank.txt").toStdString() + "/."},
             {"-", "No text found in standard input."},
             {"ftp://x", "Enter a valid web address."},
             {"HTTP://x/", "Enter a valid web address."},
             {"https://", "Enter a valid web address."}}) {
        const Result result = run({"read", source});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.error, "pithwise: " + sentence + "\n");
    }
}

TEST_F(ReadCommandTest, WhatLibrariesPrintAboutADamagedFileIsNotShown)
{
    const QByteArray truncated = QByteArray::fromHex("89504E470D0A1A0A0000000D49484452000000640000"
                                                     "00320800000000DE9AB8CD");
    const Result result = run({"read", file("scan.png", truncated)});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "pithwise: Could not read the image.\n");
}

TEST_F(ReadCommandTest, OutputThatCannotBeWrittenIsAnError)
{
    for (const QByteArray& text : {QByteArray("text"), QByteArray(1'000'000, 'x')}) {
        Program program;
        program.setOutputFile("/dev/full");
        program.start({"read", "-"}, text);
        EXPECT_EQ(program.finish(), 1);
        EXPECT_EQ(program.error().toStdString(),
                  "pithwise: The output could not be written: No space left on device.\n");
    }
}

TEST_F(ReadCommandTest, APageIsPrintedAsItsReaderText)
{
    servePage();
    const Result result = run({"read", address()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, m_page + "\n");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(run({"read", "  " + address() + "\n"}).output, m_page + "\n");
}

TEST_F(ReadCommandTest, APageIsPlanned)
{
    servePage();
    const Result result = run({"plan", "--mode", "tldr", address()});
    EXPECT_EQ(result.status, 0);
    const nlohmann::json plan = nlohmann::json::parse(result.output);
    EXPECT_EQ(plan["characters"], m_page.size());
    EXPECT_TRUE(plan["calls"][0]["user"].get<std::string>().ends_with("\n" + m_page));
}

TEST_F(ReadCommandTest, APageIsSummarized)
{
    servePage();
    StandinModel::write({StandinModel::split("- Foxes jump.")}, path("standin.gguf").toStdString());
    const Result result = run({"summarize", "--model", path("standin.gguf"), address()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "- Foxes jump.\n");
    EXPECT_EQ(result.error, "Loading model…\nSummarizing…\n");
}

TEST_F(ReadCommandTest, APageThatFailsIsAnErrorInOneSentence)
{
    m_server.setAnswer("/empty", {.body = "<p>Nothing here.</p>"});
    for (const char* command : {"read", "plan", "summarize"}) {
        const Result missing = run({command, address("/missing")});
        EXPECT_EQ(missing.status, 1);
        EXPECT_EQ(missing.output, "");
        EXPECT_EQ(missing.error, "pithwise: The page returned HTTP 404.\n");
        EXPECT_EQ(run({command, address("/empty")}).error,
                  "pithwise: Couldn't find readable text on that page.\n");
        EXPECT_EQ(run({command, "http://127.0.0.1:9/"}).error, "pithwise: Connection refused.\n");
    }
}

TEST_F(ReadCommandTest, AnAddressTooLongForAFileNameIsAnAddress)
{
    const QByteArray path = "/" + QByteArray(5000, 'x');
    servePage(path);
    EXPECT_EQ(run({"read", address(path)}).output, m_page + "\n");
}

TEST_F(ReadCommandTest, AFileIsReadThoughItsNameLooksLikeAnAddress)
{
    ASSERT_TRUE(QDir().mkpath(path("http:")));
    file("http:/x", "text");
    EXPECT_EQ(run({"read", m_folder.path() + "/http://x"}).output, "text\n");
}

TEST_F(ReadCommandTest, AnInterruptEndsAFetchAtOnce)
{
    m_server.setAnswer("/", {.body = m_paragraph, .stallAfter = 10});
    Program program;
    prepare(program);
    program.start({"read", address()});
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    while (m_server.requests().empty() && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    program.interrupt();
    EXPECT_EQ(program.finish(), 130);
    EXPECT_EQ(program.output(), "");
    EXPECT_EQ(program.error(), "");
    EXPECT_FALSE(deadline.hasExpired());
}

} // namespace
