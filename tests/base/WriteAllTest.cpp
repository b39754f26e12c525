#include "WriteAll.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <future>
#include <string>
#include <thread>

namespace {

struct Pipe
{
    Pipe()
    {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        out = FileDescriptor(ends[0]);
        in = FileDescriptor(ends[1]);
    }
    FileDescriptor out;
    FileDescriptor in;
};

/// What comes until the other end is closed.
std::string readAll(int descriptor)
{
    std::string bytes;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(descriptor, buffer.data(), buffer.size())) > 0)
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    return bytes;
}

/// Fills a pipe that nobody reads; returns with how much.
std::string fill(int descriptor)
{
    std::string bytes;
    const int flags = ::fcntl(descriptor, F_GETFL);
    ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK);
    while (::write(descriptor, "-", 1) == 1)
        bytes += '-';
    ::fcntl(descriptor, F_SETFL, flags);
    return bytes;
}

std::string someBytes(std::size_t count)
{
    std::string bytes;
    while (bytes.size() < count)
        bytes += static_cast<char>(bytes.size() % 251);
    return bytes;
}

std::atomic<int> signals = 0;

/// Has SIGUSR1 counted, and calls of the system interrupted by it.
void countSignals()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { ++signals; };
    ASSERT_EQ(::sigaction(SIGUSR1, &action, nullptr), 0);
}

bool isAsleep(pid_t thread)
{
    std::string number;
    std::string name;
    std::string state;
    std::ifstream("/proc/self/task/" + std::to_string(thread) + "/stat") >> number >> name >> state;
    return state == "S";
}

TEST(WriteAllTest, MoreThanAPipeHoldsArrivesWhole)
{
    Pipe pipe;
    const std::string bytes = someBytes(1'000'000);
    std::future<std::string> read =
        std::async(std::launch::async, [&pipe] { return readAll(pipe.out.value()); });
    EXPECT_EQ(writeAll(pipe.in.value(), bytes), bytes.size());
    pipe.in = FileDescriptor();
    EXPECT_TRUE(read.get() == bytes);
}

TEST(WriteAllTest, SignalsChangeNothing)
{
    countSignals();
    Pipe pipe;
    const std::string before = fill(pipe.in.value());
    const std::string bytes = someBytes(1'000'000);
    std::atomic<pid_t> number = 0;
    std::size_t written = 0;
    std::thread writer([&] {
        number = ::gettid();
        written = writeAll(pipe.in.value(), bytes);
        pipe.in = FileDescriptor();
    });
    // Before anything of it is written, and then in the middle.
    const auto interrupt = [&] {
        const int count = signals;
        while (number == 0 || !isAsleep(number)) // or the test's time limit
            std::this_thread::yield();
        ::pthread_kill(writer.native_handle(), SIGUSR1);
        while (signals == count)
            std::this_thread::yield();
    };
    interrupt();
    interrupt();
    std::string read(100'000, '\0');
    const ssize_t count = ::read(pipe.out.value(), read.data(), read.size());
    read.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    interrupt();
    read += readAll(pipe.out.value());
    writer.join();
    EXPECT_EQ(written, bytes.size());
    EXPECT_TRUE(read == before + bytes);
}

TEST(WriteAllTest, NothingIsWrittenWhereNothingCanBe)
{
    const FileDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(writeAll(full.value(), "text"), 0U);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(writeAll(-1, "text"), 0U);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(writeAll(-1, ""), 0U);
}

TEST(WriteAllTest, WhatFitsIsWrittenAndTheErrorSaysWhyNotAll)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limit = {1000, before.rlim_max};
    const FileDescriptor file(::memfd_create("file", MFD_CLOEXEC));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const std::size_t written = writeAll(file.value(), std::string(1500, 'x'));
    const int error = errno;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(written, 1000U);
    EXPECT_EQ(error, EFBIG);
    EXPECT_EQ(::lseek(file.value(), 0, SEEK_END), 1000);
}

} // namespace
