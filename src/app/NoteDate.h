#pragma once

#include <QDateTime>

#include <string>

/// Days and times as the user writes them: in the time zone of the system, and in the calendar and
/// the digits of the locale for times in the environment (LC_ALL, LC_TIME, LANG), which need not be
/// installed. Where that is C, POSIX or none, in the Gregorian calendar and ASCII digits. Throws
/// std::runtime_error. Any thread.
namespace NoteDate {

/// Such as "2026-11-21".
std::string day(const QDateTime& moment);

/// Such as "09:05", on a clock of 24 hours.
std::string time(const QDateTime& moment);

} // namespace NoteDate
