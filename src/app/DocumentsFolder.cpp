#include "DocumentsFolder.h"

#include "HomeFolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace DocumentsFolder {

std::filesystem::path path()
{
    HomeFolder::path(); // throws if there is none; Qt would take the root
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // Qt returns even a relative path from that file unchanged, though none is allowed there.
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::home().filePath(QStringLiteral("Documents"));
    return QFile::encodeName(folder).toStdString();
}

} // namespace DocumentsFolder
