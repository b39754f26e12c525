#pragma once

#include "Program.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Runs the built program with folders of its own in place of the user's.
class ProgramTest : public testing::Test
{
public:
    ~ProgramTest() override;

protected:
    ProgramTest();

    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    QString file(const QString& name, const QByteArray& content);

    QString path(const QString& name) const;

    void prepare(Program& program) const;

    Result run(const QStringList& arguments, const QByteArray& input = {},
               Program::Output output = Program::Output::pipe);

    QTemporaryDir m_folder;
    QString m_modelURL = "http://127.0.0.1:9/"; // nobody answers there
};
