#include "Footprint.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

/// Pages of files, such as the program's own, do not count: the system may drop them at any time,
/// and there are no more of them than the files have.
static std::size_t ownKilobytes(const QString& folder)
{
    QFile status(folder + "/status");
    if (!status.open(QIODevice::ReadOnly))
        throw std::runtime_error("The application has ended.");
    std::size_t kilobytes = 0;
    bool isFound = false;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (!line.startsWith("RssAnon:") && !line.startsWith("RssShmem:"))
            continue;
        isFound = true;
        kilobytes += line.mid(line.indexOf(':') + 1).trimmed().split(' ').front().toULong();
    }
    if (!isFound)
        throw std::runtime_error("The application has ended.");
    return kilobytes;
}

Footprint Footprint::of(qint64 process, const QString& temporaryFolder)
{
    const QString folder = QStringLiteral("/proc/%1").arg(process);
    return {ownKilobytes(folder), filesIn(folder + "/task").size(), filesIn(folder + "/fd").size(),
            filesIn(temporaryFolder)};
}

QStringList Footprint::filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                  QDir::NoDotAndDotDot);
}
