#include "ProgramFixture.h"

#include <QFile>

ProgramTest::ProgramTest() = default;

ProgramTest::~ProgramTest() = default;

QString ProgramTest::file(const QString& name, const QByteArray& content)
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
}

QString ProgramTest::path(const QString& name) const
{
    return m_folder.filePath(name);
}

void ProgramTest::prepare(Program& program) const
{
    program.setEnvironment("XDG_DATA_HOME", path("data"));
    program.setEnvironment("PITHWISE_MODEL_URL", m_modelURL);
}

ProgramTest::Result ProgramTest::run(const QStringList& arguments, const QByteArray& input,
                                     Program::Output output)
{
    Program program(output);
    prepare(program);
    program.start(arguments, input);
    const int status = program.finish();
    return {status, program.output().toStdString(), program.error().toStdString()};
}
