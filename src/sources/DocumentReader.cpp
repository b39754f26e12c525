#include "DocumentReader.h"

#include "OCR.h"
#include "PlainText.h"
#include "RichText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace DocumentReader {

static constexpr std::array<std::string_view, 8> imageExtensions = {"png", "jpg",  "jpeg", "heic",
                                                                    "tif", "tiff", "gif",  "bmp"};

static char lowerCase(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

/// What follows the last dot of the name, in lower case; empty if there is no dot. The standard
/// library's extension() does not suffice: for it ".pdf" has none.
static std::string extension(const std::filesystem::path& file)
{
    // A folder's path may end in a slash.
    const std::filesystem::path name =
        file.has_filename() ? file.filename() : file.parent_path().filename();
    const std::string& text = name.native();
    const std::size_t dot = text.rfind('.');
    std::string extension = dot == std::string::npos ? "" : text.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(), lowerCase);
    return extension;
}

std::string read(const std::filesystem::path& file, const OnPage& onPage)
{
    const std::string kind = extension(file);
    if (kind == "pdf")
        return readPDF(file, onPage);
    if (kind == "docx")
        return readDOCX(file);
    if (kind == "rtf" || kind == "rtfd")
        return RichText::read(file);
    if (std::find(imageExtensions.begin(), imageExtensions.end(), kind) != imageExtensions.end())
        return OCR::recognize(file);
    return PlainText::read(file);
}

} // namespace DocumentReader
