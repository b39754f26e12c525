#include "ClipboardText.h"

#include "AppError.h"
#include "Pasteboard.h"
#include "Utf8.h"

#include <chrono>
#include <utility>

namespace ClipboardText {

std::optional<std::string> read()
{
    const auto pasteboard = Pasteboard::create();
    std::optional<std::string> text = pasteboard->plainText(std::chrono::seconds(2));
    if (!text && pasteboard->hasSilentOwner())
        throw AppError("The application that owns the clipboard does not answer.");
    return text ? std::optional(Utf8::decoded(*std::move(text))) : std::nullopt;
}

} // namespace ClipboardText
