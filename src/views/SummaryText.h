#pragma once

#include "InlineMarkdown.h"

/// How the model's Markdown is shown. Any thread.
namespace SummaryText {

/// `markdown` with the marks at the beginnings of its lines replaced: "- [ ] " by a box, "- [x] "
/// by a ticked one, "- " and "* " by a bullet.
QString withMarks(QStringView markdown);

/// What is shown of `markdown`: its lines with their marks, and their inline Markdown.
std::vector<InlineMarkdown::Run> rendered(QStringView markdown);

/// Whether `line`, as shown, begins with one of the marks.
bool hasMark(QStringView line);

} // namespace SummaryText
