#include "SummaryText.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace SummaryText {

namespace {

struct Mark
{
    QStringView written;
    QStringView shown;
};

/// The marks; the first that fits counts.
constexpr std::array<Mark, 4> marks = {{
    {u"- [ ] ", u"\u2610 "},
    {u"- [x] ", u"\u2611 "},
    {u"- ", u"\u2022 "},
    {u"* ", u"\u2022 "},
}};

} // namespace

QString withMarks(QStringView markdown)
{
    QStringList lines;
    for (const QStringView line : markdown.split(u'\n')) {
        const auto* const mark =
            std::find_if(marks.begin(), marks.end(), [line](const Mark& candidate) {
                return line.startsWith(candidate.written);
            });
        lines += mark == marks.end()
                     ? line.toString()
                     : mark->shown.toString().append(line.sliced(mark->written.size()));
    }
    return lines.join(u'\n');
}

bool hasMark(QStringView line)
{
    return std::any_of(marks.begin(), marks.end(),
                       [line](const Mark& mark) { return line.startsWith(mark.shown); });
}

} // namespace SummaryText
