#include "ClipboardManager.h"
#include "CoreDumpLimit.h"
#include "Program.h"
#include "SelectionFixture.h"
#include "StandinModel.h"

#include <QDir>
#include <QFile>

namespace {

/// The programs of this session that are still running, by the contents of that file of theirs in
/// /proc.
QByteArrayList runningPrograms(const DesktopSession& session, const QString& name = "cmdline")
{
    const QByteArray mark = "XDG_RUNTIME_DIR=" + QFile::encodeName(session.path("runtime"));
    QByteArrayList programs;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile environment("/proc/" + entry + "/environ");
        QFile contents("/proc/" + entry + "/" + name);
        if (environment.open(QIODevice::ReadOnly) && contents.open(QIODevice::ReadOnly) &&
            QFile::symLinkTarget("/proc/" + entry + "/exe") == Program::path() &&
            environment.readAll().split('\0').contains(mark))
            programs.append(contents.readAll());
    }
    return programs;
}

void waitForEnd(DesktopSession& session)
{
    session.waitUntil("the server to end", [&] { return runningPrograms(session).isEmpty(); });
}

/// A model that says `summary`, in a file.
QString standin(const DesktopSession& session, const std::string& summary)
{
    StandinModel::write({StandinModel::split(summary)}, session.path("model").toStdString());
    return session.path("model");
}

class ClipboardOfferTest : public SelectionFixture
{
protected:
    /// Runs `pithwise summarize --copy` to its end; returns what it prints.
    QByteArray summarize(const std::string& summary)
    {
        Program program;
        program.start({"summarize", "--copy", "--model", standin(m_session, summary), "-"},
                      "Text.");
        EXPECT_EQ(program.finish(), 0) << program.error().toStdString();
        return program.output();
    }

    /// Runs `pithwise plan` on what the application in front copies, with `text` on the clipboard
    /// before: as often as it takes an application on a busy machine to be in time.
    void planSelectionOver(const QByteArray& text)
    {
        EXPECT_TRUE(succeeds([&] {
            putOnClipboard(text);
            Program program;
            program.start({"plan", "--selection"});
            return program.finish() == 0 && program.output().contains("copied");
        }));
    }
};

TEST_F(ClipboardOfferTest, TheSummaryCanBePastedAfterTheProgramHasEnded)
{
    EXPECT_EQ(summarize("\n- A naïve point 👩.\n\n"), "- A naïve point 👩.\n");
    EXPECT_EQ(clipboard(), "- A naïve point 👩.");
    EXPECT_EQ(clipboard(), "- A naïve point 👩.");
    EXPECT_EQ(runningPrograms(m_session).size(), 1);
}

TEST_F(ClipboardOfferTest, NoCoreDumpOfTheServerHoldsTheText)
{
    if (!allowCoreDumps())
        GTEST_SKIP() << "There are no core dumps here.";
    summarize("- A point.");
    const QByteArrayList limits = runningPrograms(m_session, "limits");
    ASSERT_EQ(limits.size(), 1);
    EXPECT_THAT(limits[0].toStdString(), testing::ContainsRegex("Max core file size +0 "));
}

TEST_F(ClipboardOfferTest, TheServerEndsWhenAnotherProgramCopies)
{
    summarize("- A point.");
    putOnClipboard("another");
    waitForEnd(m_session);
    EXPECT_EQ(clipboard(), "another");
}

TEST_F(ClipboardOfferTest, TheNextSummaryTakesThePlaceOfTheLast)
{
    summarize("- One.");
    summarize("- Two.");
    EXPECT_EQ(clipboard(), "- Two.");
    m_session.waitUntil("the first server to end",
                        [&] { return runningPrograms(m_session).size() == 1; });
}

TEST_F(ClipboardOfferTest, NobodyWaitsForTheServer)
{
    const QString model = standin(m_session, "- A point.");
    const QByteArray output = m_session.run(
        "sh", {"-c", "echo Text. | \"$0\" summarize --copy --model \"$1\" - 3>&1 2>&1 | cat",
               Program::path(), model});
    EXPECT_TRUE(output.endsWith("- A point.\n")) << output.toStdString();
    EXPECT_EQ(clipboard(), "- A point.");
}

TEST_F(ClipboardOfferTest, WithAClipboardManagerNoProcessStays)
{
    ClipboardManager manager;
    summarize("- A point.");
    waitForEnd(m_session);
    EXPECT_EQ(clipboard(), "- A point.");
    EXPECT_THAT(manager.asked(), testing::Contains("UTF8_STRING"));
}

TEST_F(ClipboardOfferTest, AFrozenClipboardManagerHoldsNothingUp)
{
    const ClipboardManager manager(ClipboardManager::Manner::isFrozen);
    summarize("- A point.");
    EXPECT_EQ(clipboard(), "- A point.");
    putOnClipboard("another");
    waitForEnd(m_session);
}

TEST_F(ClipboardOfferTest, WhatAGrabHasPutBackIsHandedOverToo)
{
    const ClipboardManager manager;
    startApp({"--copies", "copied"});
    planSelectionOver("earlier");
    waitForEnd(m_session);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(ClipboardOfferTest, TheServerOfAGrabEndsWhenAnotherProgramCopies)
{
    startApp({"--copies", "copied"});
    planSelectionOver("earlier");
    EXPECT_EQ(clipboard(), "earlier");
    putOnClipboard("later");
    waitForEnd(m_session);
    EXPECT_EQ(clipboard(), "later");
}

TEST_F(ClipboardOfferTest, AnEmptySummaryLeavesTheClipboardAlone)
{
    putOnClipboard("earlier");
    EXPECT_EQ(summarize(""), "");
    EXPECT_EQ(clipboard(), "earlier");
}

TEST(ClipboardOfferEndTest, TheServerEndsWithTheDesktop)
{
    DesktopSession session;
    Program program;
    program.start({"summarize", "--copy", "--model", standin(session, "- A point."), "-"}, "Text.");
    ASSERT_EQ(program.finish(), 0);
    ASSERT_EQ(runningPrograms(session).size(), 1);
    session.killServer();
    waitForEnd(session);
}

TEST(ClipboardOfferEndTest, WithoutADesktopTheSummaryIsPrintedAllTheSame)
{
    DesktopSession session;
    qunsetenv("DISPLAY");
    Program program;
    program.start({"summarize", "--copy", "--model", standin(session, "- A point."), "-"}, "Text.");
    EXPECT_EQ(program.finish(), 1);
    EXPECT_EQ(program.output(), "- A point.\n");
    EXPECT_TRUE(program.error().endsWith("pithwise: The text could not be put on the clipboard.\n"))
        << program.error().toStdString();
}

} // namespace
