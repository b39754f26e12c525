#include "ScriptFixture.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <stdexcept>

ScriptFixture::ScriptFixture() : m_bash(QStandardPaths::findExecutable("bash")) {}

void ScriptFixture::add(const QString& path, const QByteArray& content) const
{
    QDir().mkpath(QFileInfo(m_root.filePath(path)).path());
    QFile file(m_root.filePath(path));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("Could not write a file for the script.");
    file.write(content);
    file.setPermissions(file.permissions() | QFile::ExeOwner);
}

void ScriptFixture::addCommand(const QString& name, const QByteArray& script) const
{
    add("bin/" + name, "#!" + m_bash.toLocal8Bit() + '\n' + script + '\n');
}

void ScriptFixture::addScript(const QString& name) const
{
    QFile script(PITHWISE_SCRIPTS "/" + name);
    if (!script.open(QIODevice::ReadOnly))
        throw std::runtime_error("There is no such script.");
    add("scripts/" + name, script.readAll());
}

std::string ScriptFixture::content(const QString& path) const
{
    QFile file(m_root.filePath(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

ScriptFixture::Result ScriptFixture::run(const QString& program, const QStringList& arguments,
                                         const QProcessEnvironment& environment) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished())
        throw std::runtime_error("The script did not end.");
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

QProcessEnvironment ScriptFixture::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", m_root.filePath("bin") + ':' + environment.value("PATH"));
    return environment;
}
