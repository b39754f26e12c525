#pragma once

#include "SummaryMode.h"

#include <QDateTime>
#include <QString>

#include <filesystem>

/// The summaries that the user keeps, one Markdown file for each day, in a folder "Pithwise Notes".
namespace DailyNote {

struct Entry
{
    // The source's label. In the note an empty one becomes "Summary", and each line break or
    // control character (ControlCharacters) becomes a space.
    QString label;
    SummaryMode mode;
    QString output; // Markdown, written unchanged
};

/// Adds `entry` to the note of the day that `now` is in. The notes lie below `documents`, the
/// user's folder for documents. Missing folders and a missing note are created; a new note and the
/// folder of the notes are for the user alone. A note that may not be written to is replaced.
///
/// Whatever fails, the note keeps all of its earlier entries, and has this one wholly or not at
/// all. The exceptions are a failure to close the file and a process that is killed in the middle.
/// Several processes may call this at once. Throws std::runtime_error with a sentence about the
/// cause, or std::bad_alloc. Blocks on the disk, and for up to half a second on another process.
/// Any thread.
void append(const std::filesystem::path& documents, const Entry& entry, const QDateTime& now);

} // namespace DailyNote
