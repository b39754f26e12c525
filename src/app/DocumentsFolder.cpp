#include "DocumentsFolder.h"

#include "HomeFolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace DocumentsFolder {

std::filesystem::path path()
{
    HomeFolder::path(); // without which Qt would take the root for it
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // Qt takes a relative path from the file as it stands, where it is not allowed.
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::home().filePath(QStringLiteral("Documents"));
    return QFile::encodeName(folder).toStdString();
}

} // namespace DocumentsFolder
