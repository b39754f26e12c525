#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>

/// What a process has of the system's.
struct Footprint
{
    std::size_t kilobytes = 0; // resident and not of a file
    qsizetype threads = 0;
    qsizetype descriptors = 0;
    QStringList files; // in the folder for temporary ones

    /// Throws std::runtime_error where the process has ended.
    static Footprint of(qint64 process, const QString& temporaryFolder);

    /// The names of what is in `folder`.
    static QStringList filesIn(const QString& folder);
};
