#include "TesseractProgram.h"

#include <QProcess>
#include <QStandardPaths>

#include <stdexcept>

namespace TesseractProgram {

QString path()
{
    return QStandardPaths::findExecutable(QStringLiteral("tesseract"));
}

std::string read(const QString& program, const QString& file, bool isSingle)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("OMP_THREAD_LIMIT"));
    if (isSingle)
        environment.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, {file, QStringLiteral("stdout")});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        throw std::runtime_error("tesseract has failed.");
    return process.readAllStandardOutput().toStdString();
}

} // namespace TesseractProgram
