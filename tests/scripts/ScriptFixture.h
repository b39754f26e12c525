#pragma once

#include <QDir>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

/// Runs the scripts of scripts/ in a folder of its own, with commands that stand for real ones.
/// Calls throw std::runtime_error where a file cannot be written or a script does not end within
/// 30 seconds. One thread.
class ScriptFixture : public testing::Test
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    /// Writes an executable file; `path` is relative to m_root.
    void add(const QString& path, const QByteArray& content) const;
    /// A command for scripts, in m_root's bin.
    void addCommand(const QString& name, const QByteArray& script = {}) const;
    /// Copies a script to m_root's scripts, where it takes m_root for the tree.
    void addScript(const QString& name) const;
    /// "" where it is not there.
    std::string content(const QString& path) const;

    Result run(const QString& program, const QStringList& arguments,
               const QProcessEnvironment& environment) const;

    /// This process's environment, with m_root's bin before all others.
    QProcessEnvironment environment() const;

private:
    const QTemporaryDir m_folder;

protected:
    const QDir m_root{m_folder.path()};
    const QString m_bash;

    ScriptFixture();
};
