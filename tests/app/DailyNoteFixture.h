#pragma once

#include "ChildTest.h"
#include "DailyNote.h"
#include "EnvironmentVariable.h"

#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>

/// A folder for documents, and a user in London who writes digits in ASCII.
class DailyNoteFixture : public testing::Test
{
protected:
    using Path = std::filesystem::path;

    static std::string content(const Path& file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void write(const Path& file, std::string_view text)
    {
        std::ofstream(file, std::ios::binary) << text;
    }

    /// The permissions of a file or folder; 0 where there is none.
    static mode_t mode(const Path& path)
    {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777u : 0;
    }

    static std::set<std::string> names(const Path& folder)
    {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            all.insert(entry.path().filename().string());
        return all;
    }

    void append(const QString& output) const { append(documents, output); }

    void append(const Path& to, const QString& output) const
    {
        DailyNote::append(to, {"Selected text", SummaryMode::tldr, output}, now);
    }

    /// What append() adds.
    static std::string entry(const std::string& output)
    {
        return "## 09:05 — Selected text (TL;DR)\n\n" + output + "\n\n";
    }

    /// The sentence of the error that appending ends in.
    std::string failure(const Path& to, const QString& output = "lost") const
    {
        try {
            append(to, output);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "(none)";
    }
    std::string failure() const { return failure(documents); }

    static std::string sentence(int error) { return std::generic_category().message(error) + "."; }

    /// A process that runs `work`. It ends with its parent.
    static pid_t start(const std::function<void()>& work)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            try {
                work();
            } catch (const std::exception&) {
                ::_exit(1);
            }
            ::_exit(testing::Test::HasFailure() ? 1 : 0);
        }
        return child;
    }

    /// Its exit status; -1 where a signal has ended it.
    static int finish(pid_t child)
    {
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    void makeNote()
    {
        append("earlier");
        earlier = content(note);
    }
    const EnvironmentVariable zone{"TZ", "Europe/London"};
    const EnvironmentVariable locale{"LC_ALL", "C"};
    const QDateTime now{QDate(2026, 11, 21), QTime(9, 5), QTimeZone::utc()};
    const std::string header = "# Summaries — 2026-11-21\n\n";

    const QTemporaryDir temporary;
    const Path documents =
        qEnvironmentVariable(ChildTest::folderVariable, temporary.path()).toStdString();
    const Path folder = documents / "Pithwise Notes";
    const Path note = folder / "2026-11-21.md";
    std::string earlier; // what makeNote() has made
};
