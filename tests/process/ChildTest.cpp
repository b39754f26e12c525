#include "Child.h"

#include "DocumentFolder.h"
#include "EnvironmentVariable.h"
#include "FileDescriptor.h"
#include "WaitUntil.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <thread>

namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// Some tests run once more, in processes that they start.
class ChildTest : public testing::Test
{
protected:
    static constexpr std::chrono::minutes m_limit{1};
    static constexpr const char* m_variable = "PITHWISE_TEST_FOLDER"; // of such a process

    static bool isChild() { return qEnvironmentVariableIsSet(m_variable); }

    /// The words that start this test once more.
    static std::vector<std::string> itself()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        return {Child::thisProgram(),
                std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name()};
    }

    Child::Result repeat() const
    {
        const EnvironmentVariable variable(m_variable, folder().c_str());
        return Child::run(itself(), m_limit);
    }

    /// What is done in the test and in its processes is noted in the files of one folder.
    std::filesystem::path folder() const
    {
        return isChild() ? std::filesystem::path(qgetenv(m_variable).toStdString())
                         : m_folder.path();
    }

    void note(const std::string& name, long long number = 0) const
    {
        std::ofstream(folder() / name) << number << '\n';
    }

    bool isNoted(const std::string& name) const { return !noted(name).empty(); }

    /// The number as a text; empty where it is not there yet.
    std::string noted(const std::string& name) const
    {
        std::string line;
        std::ifstream file(folder() / name);
        return std::getline(file, line) && !file.eof() ? line : "";
    }

    /// Runs the test once more and returns when that has started it a third time and been killed,
    /// and the third is gone as well.
    void expectEndOfBoth() const
    {
        EXPECT_EQ(repeat().end, Child::End::killed);
        const std::string stat = "/proc/" + noted("child") + "/stat";
        EXPECT_TRUE(waitUntil([&] {
            const std::string line = contents(stat);
            return line.empty() || line.find(") Z ") != std::string::npos;
        }));
    }

    /// The second process of those.
    void startAndBeKilled() const
    {
        note("parent");
        std::thread([this] { repeat(); }).detach();
        waitUntil([this] { return isNoted("child"); });
        ::raise(SIGKILL);
    }

    static std::string contents(const std::filesystem::path& file)
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static Child::Result runShell(const std::string& script,
                                  std::chrono::milliseconds limit = m_limit)
    {
        return Child::run({"/bin/sh", "-c", script}, limit);
    }

    /// Whether a program that says `status` of itself has the signal in that set.
    static bool has(const std::string& status, const std::string& set, int signal)
    {
        const std::string name = set + ":\t";
        const std::size_t begin = status.find(name) + name.size();
        return ((std::stoull(status.substr(begin, 16), nullptr, 16) >> (signal - 1)) & 1) != 0;
    }

    const std::vector<std::string> m_status = {"/bin/cat", "/proc/self/status"};
    DocumentFolder m_folder;
};

TEST_F(ChildTest, WhatItIsGivenIsItsInputByteForByte)
{
    std::string bytes;
    for (int i = 0; i < 3'000'000; ++i)
        bytes += static_cast<char>(i % 251);
    EXPECT_TRUE(Child::run({"/bin/cat"}, m_limit, bytes).output == bytes);
    EXPECT_TRUE(Child::detach({"/bin/cat"}, bytes) == bytes);
}

TEST_F(ChildTest, WithoutInputItIsAtItsEnd)
{
    EXPECT_EQ(Child::run({"/bin/cat"}, m_limit).output, "");
    EXPECT_EQ(Child::detach({"/bin/cat"}), "");
}

TEST_F(ChildTest, InputThatItDoesNotReadHoldsNothingUp)
{
    const Child::Result result = Child::run({"/bin/true"}, m_limit, std::string(3'000'000, 'x'));
    EXPECT_EQ(result.end, Child::End::exited);
    EXPECT_EQ(result.exitStatus, 0);
}

TEST_F(ChildTest, HowItEndsIsTold)
{
    const Child::Result exited = runShell("printf 'a\\0b'; exit 7");
    EXPECT_EQ(exited.end, Child::End::exited);
    EXPECT_EQ(exited.exitStatus, 7);
    EXPECT_EQ(exited.output, std::string("a\0b", 3));
    const Child::Result killed = runShell("printf some; kill -SEGV $$");
    EXPECT_EQ(killed.end, Child::End::killed);
    EXPECT_EQ(killed.output, "some");
}

TEST_F(ChildTest, OneThatIsSilentForTooLongIsKilled)
{
    const Child::Result result = runShell("echo $$; exec sleep 600", 1s);
    EXPECT_EQ(result.end, Child::End::timedOut);
    const std::string number = result.output.substr(0, result.output.find('\n'));
    EXPECT_NE(number, "");
    EXPECT_FALSE(std::filesystem::exists("/proc/" + number));
}

TEST_F(ChildTest, OneThatKeepsTellingMayTakeLongerThanTheLimit)
{
    const Child::Result result = runShell("for i in 1 2 3 4; do sleep 0.7; echo $i; done", 2s);
    EXPECT_EQ(result.end, Child::End::exited);
    EXPECT_EQ(result.output, "1\n2\n3\n4\n");
}

TEST_F(ChildTest, WhatItWritesToStandardErrorIsDropped)
{
    EXPECT_EQ(runShell("readlink /proc/$$/fd/2").output, "/dev/null\n");
    EXPECT_EQ(Child::detach({"/bin/sh", "-c", "readlink /proc/$$/fd/2"}), "/dev/null\n");
}

TEST_F(ChildTest, AProgramThatIsNotThereCannotBeStarted)
{
    const std::string missing = (m_folder.path() / "missing").native();
    EXPECT_THROW(Child::run({missing}, m_limit), std::system_error);
    EXPECT_THROW(Child::detach({missing}), std::system_error);
}

TEST_F(ChildTest, ThisProgramIsListedUnderItsName)
{
    if (!isChild()) {
        repeat();
        EXPECT_TRUE(isNoted("listed"));
    } else if (contents("/proc/self/cmdline").starts_with(std::string("pithwise\0--", 11))) {
        note("listed");
    }
}

TEST_F(ChildTest, ItHasNoneOfThisProcessesWaysWithSignals)
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigset_t before;
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    std::signal(SIGPIPE, SIG_IGN);
    for (const std::string& status :
         {Child::run(m_status, m_limit).output, Child::detach(m_status)}) {
        EXPECT_FALSE(has(status, "SigBlk", SIGTERM)) << status;
        EXPECT_FALSE(has(status, "SigIgn", SIGPIPE)) << status;
    }
    std::signal(SIGPIPE, SIG_DFL);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(ChildTest, WhatIgnoresHangUpsStartsWhatDoesSoToo)
{
    std::signal(SIGHUP, SIG_IGN);
    EXPECT_TRUE(has(Child::run(m_status, m_limit).output, "SigIgn", SIGHUP));
    std::signal(SIGHUP, SIG_DFL);
    EXPECT_FALSE(has(Child::run(m_status, m_limit).output, "SigIgn", SIGHUP));
}

TEST_F(ChildTest, OnlyADetachedOneHasASessionOfItsOwn)
{
    struct Stat
    {
        explicit Stat(const std::string& line)
        {
            std::istringstream(line) >> id >> name >> state >> parent >> group >> session;
        }
        std::string id, name, state, parent, group, session;
    };
    const std::vector<std::string> words = {"/bin/cat", "/proc/self/stat"};
    EXPECT_EQ(Stat(Child::run(words, m_limit).output).session, std::to_string(::getsid(0)));
    const Stat detached(Child::detach(words));
    EXPECT_NE(detached.id, "");
    EXPECT_EQ(detached.session, detached.id);
}

TEST_F(ChildTest, ADetachedOneHoldsNothingOfThisProcess)
{
    const std::filesystem::path file = m_folder.write("file", "text");
    const FileDescriptor held(::open(file.c_str(), O_RDONLY)); // as by a careless library
    EXPECT_THAT(Child::detach({"/bin/ls", "-l", "/proc/self/fd"}), Not(HasSubstr(file.native())));
    EXPECT_EQ(Child::detach({"/bin/pwd"}), "/\n");
}

TEST_F(ChildTest, OneThatIsWaitedForCanOpenADescriptorByItsName)
{
    const FileDescriptor held(::open(m_folder.write("file", "text").c_str(), O_RDONLY));
    const std::string name = "/dev/fd/" + std::to_string(held.value());
    EXPECT_EQ(Child::run({"/bin/cat", name}, m_limit).output, "text");
}

TEST_F(ChildTest, WhatItWritesToIsOpenInItOnce)
{
    // Another one that is started meanwhile would have it too, and keep it open.
    const std::string script = "own=$(readlink /proc/$$/fd/1); for file in /proc/$$/fd/*; do "
                               "[ \"$(readlink $file)\" != \"$own\" ] || echo ${file##*/}; done";
    EXPECT_EQ(runShell(script).output, "1\n");
}

TEST_F(ChildTest, ADetachedOneGoesOnWhenItHasClosedItsOutput)
{
    const std::string script = "printf some; exec >/dev/null\n"
                               "while [ -d \"$0\" ] && [ ! -e \"$0/go\" ]; do sleep 0.01; done\n"
                               "echo 0 >\"$0/done\"";
    EXPECT_EQ(Child::detach({"/bin/sh", "-c", script, folder().native()}), "some");
    EXPECT_FALSE(isNoted("done"));
    note("go");
    EXPECT_TRUE(waitUntil([this] { return isNoted("done"); }));
}

TEST_F(ChildTest, WhatItTellsIsThereBeforeItsEnd)
{
    if (isChild()) {
        Child::tell(std::string("what\0is told", 12));
        waitUntil([this] { return isNoted("go"); });
        note("done");
        return;
    }
    const EnvironmentVariable variable(m_variable, folder().c_str());
    const std::string output = Child::detach(itself());
    EXPECT_THAT(output, EndsWith(std::string("what\0is told", 12)));
    EXPECT_FALSE(isNoted("done"));
    note("go");
    EXPECT_TRUE(waitUntil([this] { return isNoted("done"); }));
}

TEST_F(ChildTest, ItGoesOnThoughNobodyWaitsForWhatItTells)
{
    if (!isChild()) {
        EXPECT_EQ(repeat().end, Child::End::exited);
        EXPECT_TRUE(isNoted("done"));
        return;
    }
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ASSERT_EQ(::dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
    ::close(ends[0]);
    Child::tell("something");
    note("done");
}

TEST_F(ChildTest, ItEndsWithTheProcessThatHasStartedIt)
{
    if (!isChild())
        return expectEndOfBoth();
    if (!isNoted("parent"))
        return startAndBeKilled();
    Child::endWithParent();
    ::alarm(120); // later than the test gives up
    note("child", ::getpid());
    for (;;)
        ::pause();
}

TEST_F(ChildTest, ItEndsAtOnceWhereThatOneHasEndedBefore)
{
    if (!isChild()) {
        expectEndOfBoth();
        EXPECT_FALSE(isNoted("survived"));
        return;
    }
    if (!isNoted("parent"))
        return startAndBeKilled();
    const pid_t parent = ::getppid();
    note("child", ::getpid());
    EXPECT_TRUE(waitUntil([parent] { return ::getppid() != parent; }));
    Child::endWithParent();
    note("survived");
}

} // namespace
