#pragma once

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

/// A test that runs once more in a process of its own, for what a process cannot undo.
namespace ChildTest {

/// Names the folder of the test in that process.
inline constexpr const char* folderVariable = "PITHWISE_TEST_FOLDER";

inline bool isChild()
{
    return qEnvironmentVariableIsSet(folderVariable);
}

/// Runs the program words[0]; returns its exit code, or -1 where there is none. QProcess would
/// do that as well, but not under the thread sanitizer.
inline int run(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = 0;
    if (::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0 ||
        ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

/// Runs the present test again behind the words of `command`, if any, with `folder` as the test's.
/// Returns its exit code, or -1.
inline int repeat(const QString& folder, std::vector<std::string> command = {})
{
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    command.push_back(QCoreApplication::applicationFilePath().toStdString());
    command.push_back(std::string("--gtest_filter=") + test->test_suite_name() + "." +
                      test->name());
    qputenv(folderVariable, QFile::encodeName(folder));
    const int code = run(std::move(command));
    qunsetenv(folderVariable);
    return code;
}

/// The words that run a program in a name space of its own after the shell command `mount`, in
/// which "$0" is `folder`. None where the system does not allow that.
inline std::vector<std::string> mounted(const std::string& mount, const QString& folder)
{
    std::vector<std::string> words = {
        "unshare", "-Urm", "sh", "-c", mount + " && exec \"$@\"", folder.toStdString()};
    std::vector<std::string> trial = words;
    trial.emplace_back("true");
    return run(std::move(trial)) == 0 ? words : std::vector<std::string>();
}

} // namespace ChildTest
