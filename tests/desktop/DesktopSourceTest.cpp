#include "Program.h"
#include "SelectionFixture.h"
#include "SelectionOwner.h"

namespace {

class DesktopSourceTest : public SelectionFixture
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    static Result plan(const QString& option) { return run("plan", option); }

    static Result run(const QString& command, const QString& option)
    {
        Program program;
        program.start({command, option});
        const int status = program.finish();
        return {status, program.output().toStdString(), program.error().toStdString()};
    }
};

TEST_F(DesktopSourceTest, TheSelectionIsReadAndTheClipboardOutlivesTheProgram)
{
    startApp({"--copies", "copied"});
    Result result;
    EXPECT_TRUE(succeeds([&] {
        putOnClipboard("earlier");
        result = plan("--selection");
        return result.status == 0;
    }));
    EXPECT_THAT(result.output, testing::HasSubstr("\\n\\nText:\\ncopied\""));
    EXPECT_EQ(clipboard(), "earlier");
    putOnClipboard("later");
    EXPECT_EQ(clipboard(), "later");
}

TEST_F(DesktopSourceTest, TheTextIsPrinted)
{
    startApp({"--editor", " naïve 👩 \n"});
    selectAll("naïve");
    EXPECT_EQ(run("read", "--selection").output, "naïve 👩\n");
    putOnClipboard(" from the clipboard\n");
    EXPECT_EQ(run("read", "--clipboard").output, " from the clipboard\n");
}

TEST_F(DesktopSourceTest, ThereIsNothingToSummarizeWithoutText)
{
    EXPECT_EQ(run("summarize", "--selection").error, "pithwise: No text is selected.\n");
    EXPECT_EQ(run("summarize", "--clipboard").error, "pithwise: The clipboard has no text.\n");
}

TEST_F(DesktopSourceTest, AnOwnerOfTheClipboardThatDoesNotAnswerIsSaidNotTo)
{
    const SelectionOwner owner([](const std::string&) {
        return SelectionOwner::Answer{"", 8, "", true};
    });
    EXPECT_EQ(run("read", "--clipboard").error,
              "pithwise: The application that owns the clipboard does not answer.\n");
}

TEST_F(DesktopSourceTest, AnOwnerThatRefusesHasNoText)
{
    const SelectionOwner owner([](const std::string&) { return SelectionOwner::Answer{}; });
    EXPECT_EQ(run("read", "--clipboard").error, "pithwise: The clipboard has no text.\n");
}

TEST_F(DesktopSourceTest, TheClipboardOutlivesOneProgramAfterTheOther)
{
    startApp({"--copies", "copied"});
    for (int i = 0; i < 3; ++i) {
        // The clipboard of the last round, unless the application was too late in it.
        EXPECT_TRUE(succeeds([&] {
            if (clipboard() != "earlier")
                putOnClipboard("earlier");
            return run("read", "--selection").output == "copied\n";
        }));
        EXPECT_EQ(clipboard(), "earlier");
    }
}

TEST_F(DesktopSourceTest, AFrozenOwnerOfTheClipboardIsNotWaitedForWithoutEnd)
{
    const QProcess& owner = startApp({"--owns", "1000"}, "Owner");
    m_session.waitUntil("the owner", [&] { return clipboard("text/html") == "<b>bold</b>"; });
    stop(owner);
    EXPECT_EQ(plan("--clipboard").error,
              "pithwise: The application that owns the clipboard does not answer.\n");
    resume(owner);
}

TEST_F(DesktopSourceTest, WithoutASelectionThereIsOneSentence)
{
    const Result result = plan("--selection");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "pithwise: No text is selected.\n");
}

TEST_F(DesktopSourceTest, TheClipboardIsRead)
{
    putOnClipboard(" from the clipboard ");
    EXPECT_THAT(plan("--clipboard").output, testing::HasSubstr("Text:\\nfrom the clipboard\""));
    EXPECT_EQ(clipboard(), " from the clipboard ");
}

TEST_F(DesktopSourceTest, AnEmptyOrBlankClipboardIsOneSentence)
{
    EXPECT_EQ(plan("--clipboard").error, "pithwise: The clipboard has no text.\n");
    putOnClipboard(" \n");
    EXPECT_EQ(plan("--clipboard").error, "pithwise: The clipboard has no text.\n");
}

TEST_F(DesktopSourceTest, WithoutADesktopThereIsOneSentence)
{
    qunsetenv("DISPLAY");
    EXPECT_EQ(plan("--selection").error, "pithwise: No text is selected.\n");
    EXPECT_EQ(plan("--clipboard").error, "pithwise: The clipboard has no text.\n");
}

TEST_F(DesktopSourceTest, OnWaylandThereIsOneSentenceToo)
{
    startApp({"--copies", "copied"});
    putOnClipboard("earlier");
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(plan("--selection").error, "pithwise: No text is selected.\n");
    EXPECT_EQ(plan("--clipboard").error, "pithwise: The clipboard has no text.\n");
    EXPECT_EQ(clipboard(), "earlier");
}

} // namespace
