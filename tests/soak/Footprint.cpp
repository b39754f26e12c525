#include "Footprint.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

static std::size_t residentKilobytes(const QString& folder)
{
    QFile status(folder + "/status");
    if (!status.open(QIODevice::ReadOnly))
        throw std::runtime_error("The application has ended.");
    const QByteArray name = "VmRSS:";
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').front().toULong();
    }
    throw std::runtime_error("The application has ended.");
}

Footprint Footprint::of(qint64 process, const QString& temporaryFolder)
{
    const QString folder = QStringLiteral("/proc/%1").arg(process);
    const auto entries = [](const QString& path) {
        return QDir(path).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                    QDir::NoDotAndDotDot);
    };
    return {residentKilobytes(folder), entries(folder + "/task").size(),
            entries(folder + "/fd").size(), entries(temporaryFolder)};
}
