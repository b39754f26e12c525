#include "SourceText.h"

#include "AppError.h"
#include "PlainText.h"
#include "WhiteSpace.h"

#include <filesystem>

namespace SourceText {

static std::string readUnchecked(const std::string& source)
{
    if (source == "-")
        return PlainText::read(*stdin);
    std::error_code ignored;
    if (std::filesystem::symlink_status(source, ignored).type() ==
        std::filesystem::file_type::not_found)
        throw AppError("There is no file named " + source + ".");
    return PlainText::read(std::filesystem::path(source));
}

std::string read(const std::string& source)
{
    std::string text = readUnchecked(source);
    if (WhiteSpace::trimmed(text).empty()) {
        const std::string label =
            source == "-" ? "standard input" : std::filesystem::path(source).filename().string();
        throw AppError("No text found in " + label + ".");
    }
    return text;
}

} // namespace SourceText
