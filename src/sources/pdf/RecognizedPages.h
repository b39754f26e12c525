#pragma once

#include <optional>
#include <string>
#include <vector>

/// Collects the text of the pages of a scan, which become known in any order. One thread at a time.
class RecognizedPages
{
public:
    explicit RecognizedPages(int count) : m_pages(static_cast<std::size_t>(count)) {}

    /// Says that the page `index` is done. Without a text it could not be drawn. Requires: 0 <=
    /// index < count().
    void add(int index, std::optional<std::string> text);

    int count() const { return static_cast<int>(m_pages.size()); }

    /// The texts in the order of the pages, with an empty line between them. Pages that could not
    /// be drawn add nothing.
    std::string text() const;

    /// Which pages are done, such as "pages 1–9 of 15". Empty if all are done, and if none is.
    std::string share() const;

private:
    struct Page
    {
        bool isDone = false;
        std::optional<std::string> text;
    };

    std::vector<Page> m_pages;
};
