#include "DocxText.h"
#include "FuzzInput.h"
#include "ZipMember.h"

#include <optional>
#include <utility>

static void convert(std::string xml)
{
    if (Utf8::isValid(xml))
        FuzzInput::require(Utf8::isValid(DocxText::plainText(std::move(xml))));
}

/// A word processor's document: the bytes as an archive, and as the XML that one would unpack to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes = FuzzInput::bytes(data, size);
    convert(bytes);
    if (std::optional<std::string> xml = ZipMember::read(bytes, "word/document.xml"))
        convert(*std::move(xml));
    return 0;
}
