#include "ScriptFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// scripts/lint on a tree of one source, with a clang-tidy that notes what it is asked and finds
/// fault with the word FAULT.
class LintTest : public ScriptFixture
{
protected:
    LintTest()
    {
        addCommand("clang-tidy", "if [ $1 = --version ]; then echo 14; exit; fi\n"
                                 "echo ${@: -1} >>\"$CALLS\"\n"
                                 "! grep -H FAULT ${@: -1}");
        addTree("tree");
    }

    void addTree(const QString& tree)
    {
        add(tree + "/.clang-tidy", "Checks: all\n");
        add(tree + "/src/A.h", "int a(); // as it was\n");
        add(tree + "/src/A.cpp", "#include \"A.h\"\nint a() { return 1; }\n");
        addCommandLine(tree, "");
        QFile::remove(m_root.filePath(tree + "/scripts/lint"));
        m_root.mkpath(tree + "/scripts");
        QFile::copy(PITHWISE_SCRIPTS "/lint", m_root.filePath(tree + "/scripts/lint"));
    }

    /// In a database with a source that a tool has generated.
    void addCommandLine(const QString& tree, const QByteArray& option)
    {
        const QByteArray root = m_root.filePath(tree).toUtf8();
        add(tree + "/build/asan/compile_commands.json",
            "[{\"file\": \"" + root + "/src/A.cpp\", \"command\": \"c++ " + option + " -o A.o -c " +
                root + "/src/A.cpp\"}, {\"file\": \"" + root +
                "/build/asan/src/moc.cpp\", \"command\": \"c++ -o moc.o -c moc.cpp\"}]");
    }

    /// What clang-tidy was asked for, one a line.
    std::string lint(int status = 0, const QString& tree = "tree")
    {
        QFile::remove(m_root.filePath("calls"));
        QProcessEnvironment environment = this->environment();
        environment.insert("CALLS", m_root.filePath("calls"));
        environment.insert("XDG_CACHE_HOME", m_root.filePath("cache"));
        const Result result = run(m_root.filePath(tree + "/scripts/lint"), {}, environment);
        EXPECT_EQ(result.status, status) << result.error;
        m_output = result.output;
        return content("calls");
    }

    std::string source(const char* tree = "tree") const
    {
        return m_root.filePath(tree).toStdString() + "/src/A.cpp\n";
    }

    std::string m_output;
};

TEST_F(LintTest, WhatWasCleanIsNotLookedAtAgain)
{
    EXPECT_EQ(lint(), source());
    EXPECT_EQ(m_output, "Lint: 1 sources, 0 unchanged since they were clean, 0 with findings\n");
    EXPECT_EQ(lint(), "");
    EXPECT_EQ(m_output, "Lint: 1 sources, 1 unchanged since they were clean, 0 with findings\n");
}

TEST_F(LintTest, ACleanSourceIsCleanInAnotherFolderToo)
{
    EXPECT_EQ(lint(), source());
    addTree("other");
    EXPECT_EQ(lint(0, "other"), "");
}

TEST_F(LintTest, EachChangeAsksAgain)
{
    lint();
    add("tree/src/A.cpp", "#include \"A.h\"\nint a() { return 2; }\n");
    EXPECT_EQ(lint(), source()) << "source";
    add("tree/src/A.h", "int a(); // NOLINT\n");
    EXPECT_EQ(lint(), source()) << "comment in a header";
    add("tree/src/A.h", "#define UNUSED\nint a(); // NOLINT\n");
    EXPECT_EQ(lint(), source()) << "macro";
    addCommandLine("tree", "-DUNUSED");
    EXPECT_EQ(lint(), source()) << "command line";
    add("tree/.clang-tidy", "Checks: other\n");
    EXPECT_EQ(lint(), source()) << "configuration";
    add("tree/src/.clang-tidy", "Checks: fewer\n");
    EXPECT_EQ(lint(), source()) << "configuration of a folder";
    addCommand("clang-tidy", "if [ $1 = --version ]; then echo 15; exit; fi\n"
                             "echo ${@: -1} >>\"$CALLS\"");
    EXPECT_EQ(lint(), source()) << "version";
    EXPECT_EQ(lint(), "");
}

TEST_F(LintTest, WhatWasFoundIsToldUntilItIsGone)
{
    add("tree/src/A.cpp", "int a() { return 1; } // FAULT\n");
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(lint(1), source());
        EXPECT_THAT(m_output, HasSubstr("src/A.cpp:int a() { return 1; } // FAULT\n"));
        EXPECT_THAT(m_output, EndsWith(", 1 with findings\n"));
    }
    add("tree/src/A.cpp", "int a() { return 1; }\n");
    EXPECT_EQ(lint(), source());
}

TEST_F(LintTest, ASourceThatDoesNotCompileIsNeverTakenForClean)
{
    add("tree/src/A.cpp", "#include \"missing.h\"\n");
    EXPECT_EQ(lint(), source());
    EXPECT_EQ(lint(), source());
}

TEST_F(LintTest, NothingToLintIsAFailure)
{
    add("tree/build/asan/compile_commands.json", "[]");
    EXPECT_EQ(lint(1), "");
}

} // namespace
