#include "RecognizedPages.h"

#include <algorithm>
#include <utility>

void RecognizedPages::add(int index, std::optional<std::string> text)
{
    m_pages[static_cast<std::size_t>(index)] = {true, std::move(text)};
}

std::string RecognizedPages::text() const
{
    std::string result;
    bool isFirst = true;
    for (const Page& page : m_pages) {
        if (!page.text)
            continue;
        result.append(isFirst ? "" : "\n\n").append(*page.text);
        isFirst = false;
    }
    return result;
}

std::string RecognizedPages::share() const
{
    const auto isDone = [](const Page& page) { return page.isDone; };
    const auto done = std::count_if(m_pages.begin(), m_pages.end(), isDone);
    if (done == 0 || done == count())
        return {};
    std::string ranges;
    for (auto begin = m_pages.begin(); begin != m_pages.end();) {
        begin = std::find_if(begin, m_pages.end(), isDone);
        const auto end = std::find_if_not(begin, m_pages.end(), isDone);
        if (begin == end)
            break;
        const std::string first = std::to_string(begin - m_pages.begin() + 1);
        const std::string last = std::to_string(end - m_pages.begin());
        ranges.append(ranges.empty() ? "" : ", ").append(first);
        if (first != last)
            ranges.append("–").append(last);
        begin = end;
    }
    return (done == 1 ? "page " : "pages ") + ranges + " of " + std::to_string(count());
}
