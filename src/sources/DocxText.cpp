#include "DocxText.h"

#include "AppError.h"
#include "DocumentReader.h"
#include "HTMLText.h"
#include "RegularFile.h"
#include "ReplacedPieces.h"
#include "Utf8.h"
#include "ZipMember.h"

#include <array>
#include <optional>
#include <string_view>

namespace DocxText {

struct Mark
{
    std::string_view tag;
    char character;
};

/// Tags that become characters, in exactly these forms. With attributes or spaces they are dropped
/// like any other tag.
static constexpr std::array marks = {Mark{"</w:p>", '\n'}, Mark{"<w:tab/>", '\t'},
                                     Mark{"<w:br/>", '\n'}};

/// Replaces the marks by their characters, all in one pass. Replacing them one after the other
/// would give the same: no mark can begin within another one or come into being by a replacement.
static std::string withMarksReplaced(std::string_view xml)
{
    return replacedPieces(xml, "<", [](std::string_view rest, std::string& result) {
        for (const Mark& mark : marks) {
            if (rest.starts_with(mark.tag)) {
                result += mark.character;
                return mark.tag.size();
            }
        }
        result += '<';
        return std::size_t{1};
    });
}

std::string plainText(std::string xml)
{
    xml = withMarksReplaced(xml);
    xml = HTMLText::withoutTags(xml);
    return HTMLText::decodeEntities(xml);
}

} // namespace DocxText

namespace DocumentReader {

std::string readDOCX(const std::filesystem::path& file)
{
    const std::optional<RegularFile> archive = RegularFile::open(file);
    std::optional<std::string> xml =
        archive ? ZipMember::read(*archive, "word/document.xml") : std::nullopt;
    if (!xml || xml->empty() || !Utf8::isValid(*xml))
        throw AppError("Could not read the DOCX file.");
    return DocxText::plainText(*std::move(xml));
}

} // namespace DocumentReader
