#include "InlineMarkdown.h"

#include <QByteArray>
#include <QStringDecoder>

#include <cmark.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace InlineMarkdown {

namespace {

using Document = std::unique_ptr<cmark_node, decltype(&cmark_node_free)>;
using Iterator = std::unique_ptr<cmark_iter, decltype(&cmark_iter_free)>;

/// Stands before and behind the text, so that no block begins with it and nothing is trimmed.
/// Beside emphasis it is white space, as the ends of a text are.
constexpr QChar fence = u'\u00A0';

/// At a line break cmark looks for blocks and trims spaces. A form feed is white space to it as
/// well, but stays, so it stands for a line feed, and more around vertical tabs for the others.
struct StandIn
{
    char displaced;
    QByteArrayView text;
};

constexpr std::array<StandIn, 5> standIns = {{
    {'\n', "\f\v\f"}, // after a backslash, which is not shown but in code
    {'\r', "\f\v\v\f"},
    {'\f', "\f\v\v\v\f"},
    {'\v', "\f\v\v\v\v\f"},
    {'\n', "\f"}, // last, because the others begin with it
}};

QByteArray withStandIns(const QByteArray& text)
{
    QByteArray result;
    result.reserve(text.size());
    bool isEscaped = false;
    for (const char character : text) {
        const auto* const standIn = std::find_if(
            standIns.begin() + (isEscaped ? 0 : 1), standIns.end(),
            [character](const StandIn& entry) { return entry.displaced == character; });
        if (standIn == standIns.end())
            result += character;
        else
            result += standIn->text;
        isEscaped = character == '\\' && !isEscaped;
    }
    return result;
}

QString withoutStandIns(QByteArrayView text)
{
    QByteArray result;
    result.reserve(text.size());
    while (!text.isEmpty()) {
        const auto* const standIn =
            std::find_if(standIns.begin(), standIns.end(),
                         [text](const StandIn& entry) { return text.startsWith(entry.text); });
        const bool isFound = standIn != standIns.end();
        result += isFound ? standIn->displaced : text.front();
        text = text.sliced(isFound ? standIn->text.size() : 1);
    }
    // QString::fromUtf8() would drop a U+FEFF at the beginning.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decoder.decode(result);
}

/// Goes through what cmark has read and collects what it shows.
class Reader
{
public:
    void read(cmark_node* node, bool isBegin);

    /// What was shown, without the fences.
    std::vector<Run> takeRuns();

private:
    void show(QByteArrayView text, bool isCode = false);

    std::vector<Run> m_runs;
    int m_strong = 0; // how many are open
    int m_emphasis = 0;
    std::vector<QString> m_links; // that are open: an autolink may be within another link
};

void Reader::read(cmark_node* node, bool isBegin)
{
    const int step = isBegin ? 1 : -1;
    switch (cmark_node_get_type(node)) {
    case CMARK_NODE_STRONG:
        m_strong += step;
        break;
    case CMARK_NODE_EMPH:
        m_emphasis += step;
        break;
    case CMARK_NODE_LINK:
        if (isBegin)
            m_links.push_back(withoutStandIns(cmark_node_get_url(node)));
        else
            m_links.pop_back();
        break;
    case CMARK_NODE_TEXT:
        show(QByteArray(cmark_node_get_literal(node)).replace("\\\f\v\f", "\f"));
        break;
    case CMARK_NODE_CODE:
        show(cmark_node_get_literal(node), true);
        break;
    case CMARK_NODE_HTML_INLINE:
        show(cmark_node_get_literal(node));
        break;
    default: // blocks, of which there is but the paragraph, and images
        break;
    }
}

void Reader::show(QByteArrayView text, bool isCode)
{
    const QString link = m_links.empty() ? QString() : m_links.back();
    Run run = {withoutStandIns(text), m_strong > 0, m_emphasis > 0, isCode, link};
    if (!m_runs.empty() && m_runs.back().looksLike(run))
        m_runs.back().text += run.text;
    else
        m_runs.push_back(std::move(run));
}

std::vector<Run> Reader::takeRuns()
{
    m_runs.front().text.remove(0, 1);
    m_runs.back().text.chop(1);
    std::erase_if(m_runs, [](const Run& run) { return run.text.isEmpty(); });
    return std::move(m_runs);
}

} // namespace

std::vector<Run> parse(QStringView text)
{
    const QByteArray markdown = withStandIns((fence + text.toString() + fence).toUtf8());
    const Document document(cmark_parse_document(markdown.constData(),
                                                 static_cast<std::size_t>(markdown.size()),
                                                 CMARK_OPT_DEFAULT),
                            &cmark_node_free);
    const Iterator iterator(cmark_iter_new(document.get()), &cmark_iter_free);
    Reader reader;
    for (cmark_event_type event = cmark_iter_next(iterator.get()); event != CMARK_EVENT_DONE;
         event = cmark_iter_next(iterator.get()))
        reader.read(cmark_iter_get_node(iterator.get()), event == CMARK_EVENT_ENTER);
    return reader.takeRuns();
}

} // namespace InlineMarkdown
