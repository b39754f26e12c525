#pragma once

#include <QStringView>

#include <array>
#include <optional>

/// Finds raw HTML in Markdown, inside of which nothing is Markdown: tags, comments, processing
/// instructions, declarations and CDATA sections, by CommonMark's rules, but that a tag of more
/// than a thousand characters is none. One text each, and one thread.
class MarkdownHtml
{
public:
    /// Requires: `text` outlives this object.
    explicit MarkdownHtml(QStringView text) : m_text(text) {}

    /// The position after the HTML that begins at `position`, if some does. Linear for all
    /// positions together. Requires: they grow from call to call.
    std::optional<qsizetype> endAt(qsizetype position);

private:
    std::optional<qsizetype> endOfTag(qsizetype position) const;
    std::optional<qsizetype> endOfSection(qsizetype position);

    QStringView m_text;
    std::array<bool, 4> m_hasNoMoreEnds{}; // of each kind of section
};
