#include "SummaryText.h"

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

void appendLine(QString& result, QStringView line)
{
    for (const Mark& mark : marks) {
        if (line.startsWith(mark.written)) {
            result += mark.shown;
            result += line.sliced(mark.written.size());
            return;
        }
    }
    result += line;
}

} // namespace

QString withMarks(QStringView markdown)
{
    QString result;
    result.reserve(markdown.size());
    for (qsizetype begin = 0;;) {
        const qsizetype end = markdown.indexOf(u'\n', begin);
        appendLine(result, markdown.sliced(begin, (end < 0 ? markdown.size() : end) - begin));
        if (end < 0)
            return result;
        result += u'\n';
        begin = end + 1;
    }
}

std::vector<InlineMarkdown::Run> rendered(QStringView markdown)
{
    return InlineMarkdown::parse(withMarks(markdown));
}

bool hasMark(QStringView line)
{
    for (const Mark& mark : marks) {
        if (line.startsWith(mark.shown))
            return true;
    }
    return false;
}

} // namespace SummaryText
