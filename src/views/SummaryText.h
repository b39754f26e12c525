#pragma once

#include <QString>

/// Turns the model's Markdown into what is shown. Any thread.
namespace SummaryText {

/// `markdown` with the marks at the beginnings of its lines replaced: "- [ ] " by a box, "- [x] "
/// by a ticked box, "- " and "* " by a bullet.
QString withMarks(QStringView markdown);

/// Whether `line`, as it is shown, begins with one of the marks.
bool hasMark(QStringView line);

} // namespace SummaryText
