#include "FuzzInput.h"
#include "HTMLText.h"

/// Reader text is valid, and never longer than the page but for the empty lines between paragraphs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string html = FuzzInput::text(data, size);
    const std::string text = HTMLText::readerText(html);
    FuzzInput::require(Utf8::isValid(text));
    FuzzInput::require(text.size() <= 2 * html.size());
    return 0;
}
