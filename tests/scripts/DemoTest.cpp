#include "ScriptFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* says = "A demonstration: every summary will be the same fixed text, spelled "
                             "by a stand-in for the language model.\n";

/// scripts/demo on what was built with the tests.
class DemoTest : public ScriptFixture
{
protected:
    Result demo(const QStringList& arguments, const QString& display = {}) const
    {
        QProcessEnvironment environment = this->environment();
        environment.insert("PITHWISE_BUILD", PITHWISE_BUILD);
        environment.insert("XDG_DATA_HOME", m_root.path());
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("DISPLAY", display);
        return run(PITHWISE_SCRIPTS "/demo", arguments, environment);
    }
};

TEST_F(DemoTest, WithoutADisplayItSummarizesTheReadmeAndSaysWhoDoes)
{
    const Result result = demo({});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.error, HasSubstr("it summarizes README.md.\n"));
    EXPECT_THAT(result.error, HasSubstr(says));
    EXPECT_THAT(result.error, HasSubstr("\nSummarizing…\n"));
    EXPECT_THAT(result.output, StartsWith("- **This is no summary:** a stand-in for the language"));
}

TEST_F(DemoTest, AFileIsSummarizedInTheTerminalAlsoBesideADisplay)
{
    add("notes.txt", "The budget was agreed on.");
    const Result result = demo({m_root.filePath("notes.txt")}, ":nowhere");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("- **This is no summary:**"));
}

TEST_F(DemoTest, AFileThatIsNotThereIsNamedAsAlways)
{
    const Result result = demo({m_root.filePath("nothing.txt")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, HasSubstr("nothing.txt"));
    EXPECT_EQ(result.output, "");
}

TEST_F(DemoTest, WithADisplayItIsTheApplication)
{
    // That display is not there, which only the application minds.
    const Result result = demo({}, ":nowhere");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, HasSubstr("There is no display to show Pithwise on."));
}

TEST_F(DemoTest, ItLeavesNothingBehind)
{
    QProcessEnvironment environment = this->environment();
    environment.insert("PITHWISE_BUILD", PITHWISE_BUILD);
    environment.insert("XDG_DATA_HOME", m_root.path());
    environment.insert("DISPLAY", "");
    environment.insert("TMPDIR", m_root.filePath("temporary"));
    m_root.mkdir("temporary");
    EXPECT_EQ(run(PITHWISE_SCRIPTS "/demo", {}, environment).status, 0);
    EXPECT_EQ(QDir(m_root.filePath("temporary")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
              QStringList());
}

} // namespace
