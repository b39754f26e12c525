#include "DailyNoteFixture.h"
#include "FileDescriptor.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>

#include <array>
#include <chrono>
#include <random>
#include <vector>

namespace {

/// Several processes that write to one note.
class DailyNoteProcessTest : public DailyNoteFixture
{
protected:
    /// Appends as the user would who is told that another program is writing to the note: again.
    /// On a busy machine a process may keep the others waiting for too long.
    void appendPatiently(const QString& output) const
    {
        for (;;) {
            try {
                return append(output);
            } catch (const std::runtime_error& error) {
                if (std::string_view(error.what()) != "Another program is writing to it.")
                    throw;
            }
        }
    }

    /// How many entries there are in the note. -1 unless it is made of whole entries only, each
    /// one of append() with the outputs `first`, `first` and one more x, and so on in any order.
    int wholeEntries(std::string_view rest) const
    {
        if (!rest.starts_with(header))
            return -1;
        rest.remove_prefix(header.size());
        int count = 0;
        for (; !rest.empty(); ++count) {
            const std::size_t body = rest.find("\n\n") + 2;
            const std::size_t end = rest.find("\n\n", body);
            if (end == std::string_view::npos ||
                rest.substr(0, end + 2) != entry(std::string(end - body, 'x')))
                return -1;
            rest.remove_prefix(end + 2);
        }
        return count;
    }

    /// Whether a process is about to write to a file in the folder, one without a name too.
    bool isAboutToWrite(pid_t process, const __ptrace_syscall_info& call) const
    {
        if (call.op != PTRACE_SYSCALL_INFO_ENTRY || call.entry.nr != SYS_write)
            return false;
        const std::string descriptor = std::to_string(call.entry.args[0]);
        const Path file = "/proc/" + std::to_string(process) + "/fd/" + descriptor;
        return std::filesystem::read_symlink(file).parent_path() == folder;
    }

    /// A process that runs `work` and is held in its first attempt to write.
    pid_t startAndHold(const std::function<void()>& work) const
    {
        const pid_t child = start([&work] {
            ASSERT_EQ(::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr), 0);
            ::raise(SIGSTOP);
            work();
        });
        __ptrace_syscall_info call = {};
        int status = 0;
        do {
            EXPECT_EQ(::waitpid(child, &status, 0), child);
            EXPECT_TRUE(WIFSTOPPED(status));
            ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
            ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call);
            if (isAboutToWrite(child, call))
                break;
        } while (WIFSTOPPED(status) && ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0);
        return child;
    }

    /// Kills `child` after so long without a pause, and returns how many more bytes it has sent. By
    /// the clock, as it is to come at any moment of the work, and nothing tells of most of them.
    static int kill(pid_t child, std::chrono::microseconds delay, const FileDescriptor& sent)
    {
        const auto end = std::chrono::steady_clock::now() + delay;
        while (std::chrono::steady_clock::now() < end)
            ;
        ::kill(child, SIGKILL);
        EXPECT_EQ(finish(child), -1);
        std::array<char, 4096> bytes{};
        int total = 0;
        ssize_t count = 0;
        while ((count = ::read(sent.value(), bytes.data(), bytes.size())) > 0)
            total += static_cast<int>(count);
        return total;
    }
};

TEST_F(DailyNoteProcessTest, ProcessesThatAppendAtOnceLoseNothing)
{
    constexpr int rounds = 200;
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        children.push_back(start([this] {
            for (int round = 0; round < rounds; ++round)
                appendPatiently(QString(qsizetype{10} * round, 'x'));
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(wholeEntries(content(note)), 2 * rounds);
}

TEST_F(DailyNoteProcessTest, ProcessesThatMakeTheNoteAtOnceLoseNothing)
{
    for (int round = 0; round < 50; ++round) {
        std::filesystem::remove_all(folder);
        std::vector<pid_t> children;
        for (int i = 0; i < 4; ++i)
            children.push_back(start([this] { appendPatiently("x"); }));
        for (const pid_t child : children)
            ASSERT_EQ(finish(child), 0);
        ASSERT_EQ(wholeEntries(content(note)), 4);
        ASSERT_EQ(names(folder), std::set<std::string>{"2026-11-21.md"});
    }
}

TEST_F(DailyNoteProcessTest, WhileOneProcessWritesToTheNoteAnotherWaits)
{
    makeNote();
    const pid_t child = startAndHold([this] { append("theirs"); });
    EXPECT_EQ(failure(), "Another program is writing to it.");
    EXPECT_EQ(content(note), earlier);
    EXPECT_EQ(::ptrace(PTRACE_DETACH, child, nullptr, nullptr), 0);
    EXPECT_EQ(finish(child), 0);
    append("ours");
    EXPECT_EQ(content(note), earlier + entry("theirs") + entry("ours"));
}

TEST_F(DailyNoteProcessTest, WhileOneProcessMakesTheNoteAnotherWaits)
{
    std::filesystem::create_directory(folder);
    const pid_t child = startAndHold([this] { append("theirs"); });
    EXPECT_EQ(failure(), "Another program is writing to it.");
    EXPECT_EQ(names(folder), std::set<std::string>());
    EXPECT_EQ(::ptrace(PTRACE_DETACH, child, nullptr, nullptr), 0);
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(content(note), header + entry("theirs"));
}

TEST_F(DailyNoteProcessTest, AProgramThatKnowsNoLockLosesNothing)
{
    makeNote();
    constexpr int rounds = 2000;
    const pid_t child = start([this] {
        const FileDescriptor file(::open(note.c_str(), O_WRONLY | O_APPEND));
        for (int round = 0; round < rounds; ++round)
            ASSERT_EQ(::write(file.value(), "foreign\n", 8), 8);
    });
    for (int round = 0; round < rounds; ++round)
        append("ours");
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(content(note).size(), earlier.size() + rounds * (entry("ours").size() + 8));
}

TEST_F(DailyNoteProcessTest, AProcessThatIsKilledDamagesNothingThatIsThere)
{
    std::mt19937 random(7);
    for (int round = 0; round < 100; ++round) {
        if (round % 10 == 0)
            std::filesystem::remove_all(folder);
        const std::string before = content(note);
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        const FileDescriptor done(ends[0]);
        const QString output(1 + static_cast<int>(random() % 30000), 'x');
        const pid_t child = start([&] {
            ::close(ends[0]);
            // Not for ever, because nobody knows how long a busy machine lets it live.
            for (int i = 0; i < 20; ++i) {
                append(output);
                ASSERT_EQ(::write(ends[1], "x", 1), 1);
            }
            ::pause();
        });
        ::close(ends[1]);
        char byte = 0;
        const auto awaited = static_cast<int>(random() % 5);
        for (int i = 0; i < awaited; ++i)
            ASSERT_EQ(::read(done.value(), &byte, 1), 1);
        const int entries = awaited + kill(child, std::chrono::microseconds(random() % 1000), done);
        // What is there was there, or is as long as the process lived to say, and at the end the
        // begin of what it was about to add.
        std::string expected = before.empty() && std::filesystem::exists(note) ? header : before;
        for (int i = 0; i <= entries; ++i)
            expected += entry(output.toStdString());
        const std::string found = content(note);
        const std::size_t whole = expected.size() - entry(output.toStdString()).size();
        ASSERT_TRUE(expected.starts_with(found)) << "round " << round;
        ASSERT_GE(found.size(), entries == 0 ? before.size() : whole) << "round " << round;
    }
}

} // namespace
