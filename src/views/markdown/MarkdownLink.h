#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// Where links lead, by CommonMark's rules. Any thread.
namespace MarkdownLink {

struct Target
{
    QString address;   // with its escapes and references resolved
    qsizetype end = 0; // the position after the last character of it
};

/// The "(address "title")" that begins at `position` of `text`, if one does; the title is dropped.
std::optional<Target> targetAt(QStringView text, qsizetype position);

/// The autolink, such as "<https://a.example>" or "<me@a.example>", that begins at `position` of
/// `text`, if one does. An address of electronic mail gets its "mailto:".
std::optional<Target> autolinkAt(QStringView text, qsizetype position);

/// Whether a backslash before this character is dropped.
bool isEscapable(QChar character);

} // namespace MarkdownLink
