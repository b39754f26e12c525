#include "PageRecord.h"

#include <re2/re2.h>

namespace PageRecord {

static constexpr std::string_view mark = "\x1Epage"; // no text begins like this
static constexpr int mostPages = 1000;               // more than are ever recognised

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
    static const RE2 head(std::string(mark) + " (\\d+) (\\d+) (-1|\\d+)\n");
    re2::StringPiece rest(bytes.data(), bytes.size());
    DocumentReader::ScannedPage page{};
    int length = 0;
    if (!RE2::Consume(&rest, head, &page.index, &page.count, &length) || page.count > mostPages ||
        page.index >= page.count)
        return std::nullopt;
    if (length >= 0) {
        const auto size = static_cast<std::size_t>(length);
        if (rest.size() < size)
            return std::nullopt;
        page.text.emplace(rest.data(), size);
        rest.remove_prefix(size);
    }
    bytes = {rest.data(), rest.size()};
    return page;
}

} // namespace PageRecord
