#pragma once

#include "SummaryMode.h"

#include <QDateTime>
#include <QString>

#include <filesystem>

/// The summaries the user keeps: a Markdown file a day, in a folder "Pithwise Notes".
namespace DailyNote {

struct Entry
{
    QString label; // of the source; "Summary" stands for an empty one, spaces for its line breaks
                   // and ControlCharacters
    SummaryMode mode;
    QString output; // Markdown, written as it stands
};

/// Adds `entry` to the note of the day `now` is in, below the user's folder for documents. Folders
/// and note are made where they are missing, for the user alone; a note that may not be written to
/// is replaced.
///
/// Whatever fails, the note has all of its earlier entries, and this one wholly or not at all (but
/// where closing it fails, or the process is killed in the middle); several may do this at once.
/// Throws std::runtime_error with a sentence about the cause, std::bad_alloc. Blocks on the disk,
/// and for half a second at most on another process; any thread.
void append(const std::filesystem::path& documents, const Entry& entry, const QDateTime& now);

} // namespace DailyNote
