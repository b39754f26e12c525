#include "Program.h"
#include "SelectionFixture.h"

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

    Result plan(const QString& option)
    {
        Program program(PITHWISE_PROGRAM);
        program.start({"plan", option});
        const int status = program.finish();
        return {status, program.output().toStdString(), program.error().toStdString()};
    }
};

TEST_F(DesktopSourceTest, TheSelectionIsReadAndTheClipboardOutlivesTheProgram)
{
    putOnClipboard("earlier");
    startApp({"--copies", "copied"});
    const Result result = plan("--selection");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, testing::HasSubstr("\\n\\nText:\\ncopied\""));
    EXPECT_EQ(clipboard(), "earlier");
    putOnClipboard("later");
    EXPECT_EQ(clipboard(), "later");
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

} // namespace
