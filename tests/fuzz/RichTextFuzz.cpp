#include "AppError.h"
#include "FuzzInput.h"
#include "RichText.h"

/// Any bytes become valid UTF-8 or a sentence for the user.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        FuzzInput::require(Utf8::isValid(RichText::plainText(FuzzInput::bytes(data, size))));
    } catch (const AppError&) {
    }
    return 0;
}
