#include "DocxText.h"

#include "AppError.h"
#include "DocumentReader.h"
#include "HTMLText.h"
#include "RegularFile.h"
#include "Utf8.h"
#include "ZipMember.h"

#include <algorithm>
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
static void replaceMarks(std::string& xml)
{
    char* out = xml.data();
    const char* in = out;
    const char* const end = out + xml.size();
    while (in != end) {
        const std::string_view rest(in, static_cast<std::size_t>(end - in));
        const auto mark = std::find_if(marks.begin(), marks.end(), [rest](const Mark& candidate) {
            return rest.starts_with(candidate.tag);
        });
        if (mark != marks.end()) {
            *out++ = mark->character;
            in += mark->tag.size();
            continue;
        }
        const std::size_t length = std::min(rest.find('<', 1), rest.size());
        out = std::copy(in, in + length, out);
        in += length;
    }
    xml.resize(static_cast<std::size_t>(out - xml.data()));
}

std::string plainText(std::string xml)
{
    replaceMarks(xml);
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
