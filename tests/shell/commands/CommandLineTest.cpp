#include "ProgramFixture.h"

#include <QFileInfo>
#include <QProcess>

#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace {

class CommandLineTest : public ProgramTest
{
protected:
    /// What `plan` says of `content`.
    nlohmann::json plan(const QByteArray& content, const QStringList& options = {})
    {
        const Result result =
            run(QStringList("plan") + options + QStringList(file("source", content)));
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.error, "");
        return nlohmann::json::parse(result.output);
    }
};

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(CommandLineTest, TheHelpSaysWhatThereIs)
{
    const Result result = run({"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.output, "Usage: pithwise"));
    EXPECT_EQ(result.error, "");
}

TEST_F(CommandLineTest, HelpAndVersionAreEverywhere)
{
    EXPECT_EQ(run({"--version"}).output, "pithwise " PITHWISE_VERSION "\n");
    for (const QStringList& command :
         {QStringList{}, {"read"}, {"summarize"}, {"plan"}, {"model"}, {"model", "download"}}) {
        const Result help = run(command + QStringList("--help"));
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(contains(help.output, "Usage: "));
        const Result version = run(command + QStringList("--version"));
        EXPECT_EQ(version.status, 0);
        EXPECT_EQ(version.output, "pithwise " PITHWISE_VERSION "\n");
    }
}

TEST_F(CommandLineTest, TheHelpHasNothingThatIsForTheProgramItself)
{
    const std::string help = run({"--help"}).output;
    for (const char* command :
         {"ask-for-hotkey", "grab-selection", "offer-clipboard", "read-document"})
        EXPECT_FALSE(contains(help, command)) << command;
}

TEST_F(CommandLineTest, TheHelpSaysThatAStandinIsNoLanguageModel)
{
    EXPECT_TRUE(contains(run({"summarize", "--help"}).output, "stand-in"));
}

TEST_F(CommandLineTest, WrongUsageIsAnsweredWithTheUsageLine)
{
    for (const QStringList& arguments : {QStringList{"unknown"},
                                         {"summarize"},
                                         {"plan"},
                                         {"read"},
                                         {"model"},
                                         {"model", "remove"},
                                         {"plan", "--mode", "poem", "x"},
                                         {"plan", "--mode", "0", "x"},
                                         {"plan", "--length", "long", "x"},
                                         {"plan", "a", "b"},
                                         {"read", "a", "b"},
                                         {"read", "--mode", "tldr", "a"},
                                         {"plan", "--selection", "a"},
                                         {"plan", "--clipboard", "a"},
                                         {"plan", "--clipboard", "--selection"},
                                         {"summarize", "--colour", "x"}}) {
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(' ').toStdString();
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(contains(result.error, "\nUsage: pithwise")) << result.error;
    }
}

TEST_F(CommandLineTest, ThePlanOfAShortTextIsOneCall)
{
    const nlohmann::json plan =
        this->plan("Grüße  aus 東京\r\n", {"--mode", "tldr", "--length", "brief"});
    EXPECT_EQ(plan["characters"], 12);
    ASSERT_EQ(plan["calls"].size(), 1U);
    EXPECT_EQ(plan["calls"][0]["status"], "Summarizing…");
    EXPECT_EQ(plan["calls"][0]["user"],
              "Write a TL;DR in a single sentence under 25 words. Begin with \"**TL;DR:** \".\n\n"
              "Text:\nGrüße aus 東京");
    EXPECT_EQ(plan["calls"][0]["maxTokens"], 60);
    EXPECT_TRUE(contains(plan["calls"][0]["system"], "precise summarization assistant"));
}

TEST_F(CommandLineTest, ThePlanOfALongTextReadsSectionsAndTheirNotes)
{
    const nlohmann::json plan = this->plan(QByteArray(7501, 'x'));
    EXPECT_EQ(plan["characters"], 7501);
    ASSERT_EQ(plan["calls"].size(), 3U);
    EXPECT_EQ(plan["calls"][0]["status"], "Reading part 1 of 2…");
    EXPECT_EQ(plan["calls"][0]["maxTokens"], 170);
    EXPECT_EQ(plan["calls"][1]["status"], "Reading part 2 of 2…");
    EXPECT_TRUE(contains(plan["calls"][2]["user"],
                         "Notes from consecutive sections of one document:\n"
                         "Section 1: <note 1>\nSection 2: <note 2>"));
    EXPECT_EQ(plan["calls"][2]["maxTokens"], 220);
}

TEST_F(CommandLineTest, ThePlanIsUtf8AndKeepsItsOrder)
{
    const std::string output = run({"plan", "-"}, "naïve 👩").output;
    EXPECT_TRUE(contains(output, "naïve 👩"));
    EXPECT_LT(output.find("\"characters\""), output.find("\"calls\""));
    EXPECT_LT(output.find("\"status\""), output.find("\"system\""));
    EXPECT_LT(output.find("\"user\""), output.find("\"maxTokens\""));
}

TEST_F(CommandLineTest, BytesThatAreNotUtf8AreReadAsLatin1)
{
    EXPECT_TRUE(contains(plan("caf\xE9")["calls"][0]["user"], "Text:\ncafé"));
    EXPECT_TRUE(contains(plan("caf\xC3")["calls"][0]["user"], "Text:\ncafÃ"));
    EXPECT_TRUE(contains(plan(QByteArray("a\0b", 3))["calls"][0]["user"], std::string("a\0b", 3)));
    EXPECT_TRUE(contains(plan("\xEF\xBB\xBFtext")["calls"][0]["user"], "Text:\n\uFEFFtext"));
}

TEST_F(CommandLineTest, AMissingFileIsNamed)
{
    const Result result = run({"plan", "no such\nfile.txt"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "pithwise: There is no file named no such?file.txt.\n");
}

TEST_F(CommandLineTest, AnErrorHoldsNothingThatCommandsATerminal)
{
    for (const auto output : {Program::Output::pipe, Program::Output::terminal}) {
        const Result result =
            run({"plan", QStringLiteral("a\u009B31mb\u202Ec\u2066d\u007F.txt")}, {}, output);
        EXPECT_EQ(result.error, "pithwise: There is no file named a?31mb?c?d?.txt.\n");
    }
    EXPECT_EQ(run({"plan", "--mode", QStringLiteral("\u009Bpoem"), "x"}).error.substr(0, 40),
              "pithwise: ?poem is not one of bullets|ex");
}

TEST_F(CommandLineTest, AnErrorIsValidUtf8WhateverBytesAFileHasForAName)
{
    const std::string script = "exec \"$0\" plan \"$(printf 'a\\377\\233.txt')\"";
    QProcess shell;
    shell.start("/bin/sh", {"-c", QString::fromStdString(script), Program::path()});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.readAllStandardError().toStdString(),
              "pithwise: There is no file named aÿ?.txt.\n");
}

TEST_F(CommandLineTest, OnlyRegularFilesAreRead)
{
    ASSERT_EQ(::mkfifo(qPrintable(path("pipe")), 0600), 0);
    for (const QString& source : {m_folder.path(), path("pipe"), QString("/dev/zero")}) {
        const Result result = run({"plan", source});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "pithwise: Unsupported file type.\n");
    }
}

TEST_F(CommandLineTest, AFileWithADashForANameIsReadByItsPath)
{
    file("-", "text");
    EXPECT_EQ(run({"plan", path("-")}).status, 0);
}

TEST_F(CommandLineTest, ABlankTextIsAnError)
{
    EXPECT_EQ(run({"plan", file("blank.txt", " \n\t\xC2\xA0")}).error,
              "pithwise: No text found in blank.txt.\n");
    const Result result = run({"summarize", "-"}, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "pithwise: No text found in standard input.\n");
}

TEST_F(CommandLineTest, WithoutAHomeFolderTheModelHasNoPlace)
{
    for (const QStringList& arguments : {QStringList{"model", "path"},
                                         {"model", "status"},
                                         {"model", "download"},
                                         {"summarize", file("source", "text")}}) {
        Program program;
        prepare(program);
        program.setEnvironment("XDG_DATA_HOME", "");
        program.setEnvironment("HOME", "");
        program.start(arguments);
        EXPECT_EQ(program.finish(), 1);
        EXPECT_EQ(program.output(), "");
        EXPECT_EQ(QByteArray(program.error()).replace("Downloading the language model…\n", ""),
                  "pithwise: There is no home folder: the variable HOME names none.\n");
    }
    EXPECT_FALSE(QFileInfo::exists("/.local"));
}

TEST_F(CommandLineTest, AModelFileThatIsNotThereIsNamedAsItWasGiven)
{
    for (const QStringList& command : {QStringList{"summarize", "-"}, {"hotkey"}}) {
        for (const char* name : {"no/such.gguf", "./x", "/nowhere.gguf"})
            EXPECT_EQ(run(command + QStringList{"--model", name}, "text").error,
                      "pithwise: There is no file named " + std::string(name) + ".\n");
    }
}

TEST_F(CommandLineTest, OutputThatCannotBeWrittenIsAnError)
{
    Program program;
    program.setOutputFile("/dev/full");
    program.start({"plan", "-"}, "text");
    EXPECT_EQ(program.finish(), 1);
    EXPECT_EQ(program.error().toStdString(),
              "pithwise: The output could not be written: No space left on device.\n");
}

} // namespace
