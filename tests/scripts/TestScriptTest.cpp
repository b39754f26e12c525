#include "ScriptFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// scripts/test with commands that only note how they were called.
class TestScriptTest : public ScriptFixture
{
protected:
    TestScriptTest()
    {
        addScript("test");
        addScript("steps");
        add("scripts/setup", "#!/bin/sh\necho setup \"$@\" >>calls\n");
        addCommand("nproc", "echo 2");
        addCommand("cmake", "echo cmake \"$@\" >>calls");
        addCommand("ctest", "echo ctest \"$@\" >>calls");
    }

    Result test(const QStringList& arguments)
    {
        return run(m_root.filePath("scripts/test"), arguments, environment());
    }
};

TEST_F(TestScriptTest, EverythingIsSetUpConfiguredBuiltAndTested)
{
    const Result result = test({});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(content("calls"), "setup test\n"
                                "cmake --preset dev --log-level=WARNING\n"
                                "cmake --build --preset dev\n"
                                "ctest --preset dev -j 6\n");
}

TEST_F(TestScriptTest, FastLeavesTheDesktopOut)
{
    EXPECT_EQ(test({"fast"}).status, 0);
    EXPECT_THAT(content("calls"), EndsWith("\ncmake --build --preset dev\nctest --preset dev -j 6 "
                                           "--label-exclude ^(application|desktop)_test$\n"));
}

TEST_F(TestScriptTest, NamesChooseTestsThatContainOneOfThem)
{
    EXPECT_EQ(test({"DropTest", "sources_test.Pdf"}).status, 0);
    EXPECT_THAT(content("calls"), EndsWith("\ncmake --build --preset dev\nctest --preset dev -j 6 "
                                           "--tests-regex DropTest|sources_test\\.Pdf\n"));
}

TEST_F(TestScriptTest, WholeProgramsAreBuiltAlone)
{
    EXPECT_EQ(test({"base_test", "rtf_test"}).status, 0);
    EXPECT_THAT(content("calls"), EndsWith("\ncmake --build --preset dev --target base_test "
                                           "rtf_test\nctest --preset dev -j 6 "
                                           "--tests-regex base_test|rtf_test\n"));
}

TEST_F(TestScriptTest, WhatFailsEndsItWithItsStatus)
{
    addCommand("cmake", "echo cmake \"$@\" >>calls; exit 3");
    EXPECT_EQ(test({}).status, 3);
    EXPECT_EQ(content("calls"), "setup test\ncmake --preset dev --log-level=WARNING\n");
}

TEST_F(TestScriptTest, EachStepIsToldWithItsTime)
{
    const std::string output = test({}).output;
    for (const char* step : {"Set-up", "Configuration: dev", "Build: dev", "Tests: dev"}) {
        EXPECT_THAT(output, HasSubstr(std::string("\n== ") + step + "\n"));
        EXPECT_THAT(output, HasSubstr(std::string("\n== ") + step + ": 0:0"));
        EXPECT_THAT(output, HasSubstr(std::string("  ") + step + "\n"));
    }
    EXPECT_THAT(output, EndsWith("  in all\n"));
    addCommand("ctest", "exit 8");
    EXPECT_THAT(test({}).output, Not(HasSubstr("in all")));
}

} // namespace
