#include "BenchModel.h"
#include "Program.h"
#include "SelectionFixture.h"
#include "SelectionOwner.h"
#include "StandinModel.h"

#include <QDir>
#include <QFile>

namespace {

class HotkeyCommandTest : public SelectionFixture
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    QString standin()
    {
        QString file = m_session.path("standin.gguf");
        StandinModel::write({StandinModel::split("\n" + m_script + "\n")}, file.toStdString());
        return file;
    }

    static Result finish(Program& program)
    {
        const int status = program.finish();
        return {status, program.output().toStdString(), program.error().toStdString()};
    }

    Result hotkey(const QStringList& options)
    {
        Program program;
        program.start(QStringList("hotkey") + options);
        return finish(program);
    }

    /// The same on the stand-in for the model.
    Result hotkeyOnStandin(const QStringList& options = {})
    {
        return hotkey(QStringList{"--model", standin()} + options);
    }

    void selectSomeText()
    {
        startApp({"--editor", "Some text to select."});
        selectAll("Some text to select.");
    }

    const std::string m_script = "- The **first** takeaway.\n- A naïve third 👩.";
};

TEST_F(HotkeyCommandTest, TheSelectedTextIsSummarized)
{
    selectSomeText();
    const Result result = hotkeyOnStandin();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, m_script + "\n");
    EXPECT_EQ(result.error.find("Capturing"), std::string::npos);
}

TEST_F(HotkeyCommandTest, WithoutASelectionTheFrontWindowIsRead)
{
    m_session.start("xterm", {"-fa", "DejaVu Sans Mono", "-fs", "16", "-e", "sh", "-c",
                              "echo Pack my box with five dozen liquor jugs; exec cat"});
    m_session.waitForWindow({"--class", "^XTerm$"});
    m_session.waitUntil("the text in the window", [&] {
        const Result result = hotkeyOnStandin();
        return result.status == 0 && result.output == m_script + "\n" &&
               result.error.starts_with("Capturing and reading text…\n");
    });
}

TEST_F(HotkeyCommandTest, WithoutBothTheClipboardIsSummarizedAndStays)
{
    putOnClipboard("copied");
    EXPECT_EQ(hotkeyOnStandin().output, m_script + "\n");
    EXPECT_EQ(clipboard(), "copied");
}

TEST_F(HotkeyCommandTest, WithNothingAtAllThatIsOneSentence)
{
    const Result result = hotkeyOnStandin({"--copy"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.error.ends_with("pithwise: Select some text first, or copy some.\n"))
        << result.error;
}

TEST_F(HotkeyCommandTest, WithoutAModelItSaysWhatToDo)
{
    selectSomeText();
    const Result result = hotkey({});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "pithwise: The language model is missing; \"pithwise model download\" "
                            "fetches it.\n");
}

TEST_F(HotkeyCommandTest, AnOwnerOfTheClipboardThatDoesNotAnswerIsSaidNotTo)
{
    const SelectionOwner owner([](const std::string&) {
        return SelectionOwner::Answer{"", 8, "", true};
    });
    const Result result = hotkeyOnStandin();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.error.ends_with(
        "pithwise: The application that owns the clipboard does not answer.\n"))
        << result.error;
}

TEST_F(HotkeyCommandTest, ADamagedModelIsOneSentence)
{
    selectSomeText();
    QFile file(m_session.path("damaged.gguf"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const Result result = hotkey({"--model", file.fileName()});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.error.ends_with("pithwise: Could not load the language model.\n"));
}

TEST_F(HotkeyCommandTest, WhatIsCopiedOutlivesTheProgramUntilAnotherCopies)
{
    putOnClipboard("earlier");
    selectSomeText();
    EXPECT_EQ(hotkeyOnStandin({"--copy"}).output, m_script + "\n");
    EXPECT_EQ(clipboard().toStdString(), m_script);
    EXPECT_EQ(clipboard("STRING"), "");
    putOnClipboard("later");
    EXPECT_EQ(clipboard(), "later");
}

TEST_F(HotkeyCommandTest, WithoutACopyTheClipboardIsNotTouched)
{
    putOnClipboard("earlier");
    selectSomeText();
    const Result result = hotkeyOnStandin();
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(HotkeyCommandTest, ANoteOfTheDayGetsTheSummary)
{
    selectSomeText();
    const Result result = hotkeyOnStandin({"--note"});
    EXPECT_EQ(result.status, 0) << result.error;
    const QDir folder(m_session.path("home/Documents/Pithwise Notes"));
    const QStringList names = folder.entryList({"*.md"}, QDir::Files);
    ASSERT_EQ(names.size(), 1);
    QFile note(folder.filePath(names[0]));
    ASSERT_TRUE(note.open(QIODevice::ReadOnly));
    const std::string text = note.readAll().toStdString();
    EXPECT_THAT(text, testing::HasSubstr(" — Selected text (3 Bullets)\n\n" + m_script + "\n\n"));
}

TEST_F(HotkeyCommandTest, AnInterruptKeepsTheTextSoFar)
{
    selectSomeText();
    const QString model = m_session.path("slow.gguf");
    BenchModel::write(model.toStdString(), {1, 256, 256, 4, 2});
    Program program(Program::Output::terminal);
    program.start({"hotkey", "--model", model});
    ASSERT_TRUE(program.waitForOutput());
    program.interrupt();
    const Result result = finish(program);
    EXPECT_EQ(result.status, 130);
    EXPECT_GT(result.output.size(), 2U);
    EXPECT_LT(result.output.size(), 220U);
    EXPECT_TRUE(result.output.ends_with("\r\n"));
}

} // namespace
