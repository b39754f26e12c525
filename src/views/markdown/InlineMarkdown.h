#pragma once

#include <QString>
#include <QStringView>

#include <vector>

/// Markdown's inline syntax without its blocks, by CommonMark's rules: emphasis and strong
/// emphasis, code spans, links, autolinks, backslash escapes and character references (numbers and
/// the names in CharacterReference). Different from CommonMark: white space and line breaks stay as
/// they are, also inside of code; a line break ends no construct but autolinks; raw HTML is shown
/// literally; of an image its description is shown; there are no reference definitions.
namespace InlineMarkdown {

/// A stretch of text that looks the same.
struct Run
{
    QString text; // never empty
    bool bold = false;
    bool italic = false;
    bool code = false;
    QString link; // where it leads, as it is written; empty for none

    bool operator==(const Run&) const = default;
};

/// What `text` shows, from its beginning to its end; two runs in a row look different. There is no
/// text that is wrong: what is not Markdown is shown literally. Linear in `text`; any thread.
std::vector<Run> parse(QStringView text);

} // namespace InlineMarkdown
