#include "MemoryLimit.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#ifndef PITHWISE_SANITIZED

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr int status = 3;

struct End
{
    int exitStatus; // -1 where a signal has ended it
    std::string output;
};

/// A process with 256 MiB for its data that does `work`.
End endOf(const std::function<void()>& work)
{
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe(pipe.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(pipe[1], STDOUT_FILENO);
        ::close(STDERR_FILENO);
        MemoryLimit::set(256 * mebibyte, "No more.", status);
        work();
        ::_exit(0);
    }
    ::close(pipe[1]);
    std::array<char, 100> buffer{};
    const ssize_t count = ::read(pipe[0], buffer.data(), buffer.size());
    ::close(pipe[0]);
    int end = 0;
    EXPECT_EQ(::waitpid(child, &end, 0), child);
    return {WIFEXITED(end) ? WEXITSTATUS(end) : -1,
            std::string(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0)};
}

/// All the memory there is, in pieces of `size` bytes, until there is no more.
void takeAll(std::size_t size)
{
    std::vector<void*> pieces;
    pieces.reserve(mebibyte);
    while (void* const piece = std::malloc(size))
        pieces.push_back(piece);
}

void takeOnce(std::size_t size)
{
    const std::vector<char> bytes(size, 'x');
    if (bytes.back() != 'x')
        ::_exit(1);
}

TEST(MemoryLimitTest, WhatFitsIsGiven)
{
    const End end = endOf([] { takeOnce(128 * mebibyte); });
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_EQ(end.output, "");
}

TEST(MemoryLimitTest, WhatDoesNotFitEndsTheProcessWithTheSentence)
{
    const End end = endOf([] { takeOnce(512 * mebibyte); });
    EXPECT_EQ(end.exitStatus, status);
    EXPECT_EQ(end.output, "No more.");
}

TEST(MemoryLimitTest, ALibraryThatCrashesForWantOfMemoryEndsItWithTheSentenceToo)
{
    for (const auto& crash :
         std::vector<std::function<void()>>{[] { std::abort(); }, [] { __builtin_trap(); },
                                            [] { *static_cast<volatile int*>(nullptr) = 0; }}) {
        const End end = endOf([&] {
            takeAll(mebibyte);
            crash();
        });
        EXPECT_EQ(end.exitStatus, status);
        EXPECT_EQ(end.output, "No more.");
    }
}

TEST(MemoryLimitTest, ACrashWithMemoryLeftIsACrash)
{
    const End end = endOf([] { std::abort(); });
    EXPECT_EQ(end.exitStatus, -1);
    EXPECT_EQ(end.output, "");
}

} // namespace

#endif
