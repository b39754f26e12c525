#include "PageRecord.h"

#include <charconv>

namespace PageRecord {

namespace {

constexpr std::string_view mark = "\x1Epage"; // no text begins like this
constexpr int mostPages = 1000;               // more than are ever recognised

/// Takes a space and the number behind it off the beginning of `bytes`.
std::optional<int> takeNumber(std::string_view& bytes)
{
    int number = 0;
    if (!bytes.starts_with(' '))
        return std::nullopt;
    const char* const end = bytes.data() + bytes.size();
    const auto [rest, error] = std::from_chars(bytes.data() + 1, end, number);
    if (error != std::errc())
        return std::nullopt;
    bytes.remove_prefix(static_cast<std::size_t>(rest - bytes.data()));
    return number;
}

} // namespace

std::string written(const DocumentReader::ScannedPage& page)
{
    std::string record(mark);
    record += ' ' + std::to_string(page.index) + ' ' + std::to_string(page.count) + ' ';
    // A page that could not be drawn has -1 for a length, and no text.
    record += page.text ? std::to_string(page.text->size()) : "-1";
    return record + '\n' + page.text.value_or("");
}

std::optional<DocumentReader::ScannedPage> take(std::string_view& bytes)
{
    std::string_view rest = bytes;
    if (!rest.starts_with(mark))
        return std::nullopt;
    rest.remove_prefix(mark.size());
    const std::optional<int> index = takeNumber(rest);
    const std::optional<int> count = index ? takeNumber(rest) : std::nullopt;
    const std::optional<int> length = count ? takeNumber(rest) : std::nullopt;
    if (!length || !rest.starts_with('\n') || *count > mostPages || *index < 0 || *index >= *count)
        return std::nullopt;
    rest.remove_prefix(1);
    DocumentReader::ScannedPage page{*index, *count, std::nullopt};
    if (*length >= 0) {
        const auto size = static_cast<std::size_t>(*length);
        if (rest.size() < size)
            return std::nullopt;
        page.text = rest.substr(0, size);
        rest.remove_prefix(size);
    }
    bytes = rest;
    return page;
}

} // namespace PageRecord
