#pragma once

#include <QString>
#include <QStringView>

#include <vector>

/// Markdown's inline syntax without its blocks, as CommonMark's own library reads it: emphasis and
/// strong emphasis, code spans, links, autolinks, backslash escapes and character references.
/// Different from CommonMark: white space and line breaks stay as they are, also inside of code; a
/// line break ends no construct but autolinks; raw HTML is shown literally; of an image its
/// description is shown; there are no reference definitions.
namespace InlineMarkdown {

/// A stretch of text that looks the same.
struct Run
{
    QString text; // never empty
    bool bold = false;
    bool italic = false;
    bool code = false;
    QString link; // where it leads, without escapes and references; empty for none

    bool operator==(const Run&) const = default;

    /// Whether nothing but the text differs.
    bool looksLike(const Run& other) const
    {
        return bold == other.bold && italic == other.italic && code == other.code &&
               link == other.link;
    }
};

/// What `text` shows, from its beginning to its end; two runs in a row look different. There is no
/// text that is wrong: what is not Markdown is shown literally. Linear in `text`, but for links in
/// images without an end ("![[a](b)" over and over), for which old releases of cmark, 0.30.2 among
/// them, take quadratic time: 70 ms for 50 KB. Any thread.
std::vector<Run> parse(QStringView text);

} // namespace InlineMarkdown
