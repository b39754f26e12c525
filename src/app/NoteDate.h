#pragma once

#include <QDateTime>

#include <string>

/// Days and times in the form that the user is used to: in the system's time zone, and in the
/// calendar and the digits of the environment's locale for times (LC_ALL, LC_TIME, LANG). That
/// locale need not be installed. If it is C, POSIX or not set, the calendar is Gregorian and the
/// digits are ASCII. Throws std::runtime_error. Any thread.
namespace NoteDate {

/// The day, such as "2026-11-21".
std::string day(const QDateTime& moment);

/// The time, such as "09:05", on a clock of 24 hours.
std::string time(const QDateTime& moment);

} // namespace NoteDate
