#pragma once

#include <optional>
#include <string>
#include <vector>

/// The text of the pages of a scan, which become known in any order. One thread at a time.
class RecognizedPages
{
public:
    explicit RecognizedPages(int count) : m_pages(static_cast<std::size_t>(count)) {}

    /// The page of that index is done; without a text it could not be drawn. Requires: 0 <= index
    /// < count().
    void add(int index, std::optional<std::string> text);

    int count() const { return static_cast<int>(m_pages.size()); }

    /// The texts in the pages' order with an empty line between them; pages that could not be drawn
    /// leave none.
    std::string text() const;

    /// Which pages are done, such as "pages 1–9 of 15"; empty where all are, and where none is.
    std::string share() const;

private:
    struct Page
    {
        bool isDone = false;
        std::optional<std::string> text;
    };

    std::vector<Page> m_pages;
};
