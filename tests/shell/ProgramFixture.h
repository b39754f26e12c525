#pragma once

#include "Program.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Runs the built program with folders of its own in place of the user's.
class ProgramTest : public testing::Test
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    QString file(const QString& name, const QByteArray& content)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

    void prepare(Program& program) const
    {
        program.setEnvironment("XDG_DATA_HOME", path("data"));
        program.setEnvironment("PITHWISE_MODEL_URL", m_modelURL);
    }

    Result run(const QStringList& arguments, const QByteArray& input = {},
               Program::Output output = Program::Output::pipe)
    {
        Program program(output);
        prepare(program);
        program.start(arguments, input);
        const int status = program.finish();
        return {status, program.output().toStdString(), program.error().toStdString()};
    }

    QTemporaryDir m_folder;
    QString m_modelURL = "http://127.0.0.1:9/"; // nobody answers there
};
