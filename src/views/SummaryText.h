#pragma once

#include "InlineMarkdown.h"

/// Turns the model's Markdown into what is shown. Any thread.
namespace SummaryText {

/// `markdown` with the marks at the beginnings of its lines replaced: "- [ ] " by a box, "- [x] "
/// by a ticked box, "- " and "* " by a bullet.
QString withMarks(QStringView markdown);

/// What is shown for `markdown`: its lines with their marks, and their inline Markdown as runs.
std::vector<InlineMarkdown::Run> rendered(QStringView markdown);

/// Whether `line`, as it is shown, begins with one of the marks.
bool hasMark(QStringView line);

} // namespace SummaryText
