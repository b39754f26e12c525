#include "FuzzInput.h"
#include "HTMLText.h"

/// Decoding keeps text valid and never makes it longer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = FuzzInput::text(data, size);
    const std::string decoded = HTMLText::decodeEntities(text);
    FuzzInput::require(Utf8::isValid(decoded));
    FuzzInput::require(decoded.size() <= text.size());
    return 0;
}
