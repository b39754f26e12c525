#include "RichText.h"

#include "AppError.h"
#include "RegularFile.h"
#include "RtfReader.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace RichText {

static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
static constexpr std::string_view blanks = " \t\r\n";
static constexpr std::string_view beginning = "{\\rtf";

static bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string read(const std::filesystem::path& path)
{
    std::error_code ignored;
    const bool isFolder = std::filesystem::is_directory(path, ignored);
    const std::optional<RegularFile> file = RegularFile::open(isFolder ? path / "TXT.rtf" : path);
    const std::optional<std::string> bytes = file ? file->bytes() : std::nullopt;
    if (!bytes)
        throw AppError("Could not read the rich-text document.");
    return plainText(*bytes);
}

std::string plainText(std::string_view rtf)
{
    if (rtf.starts_with(byteOrderMark))
        rtf.remove_prefix(byteOrderMark.size());
    rtf.remove_prefix(std::min(rtf.find_first_not_of(blanks), rtf.size()));
    // Other control words begin with "\rtf" too, but no document begins with one of those.
    if (!rtf.starts_with(beginning) ||
        (rtf.size() > beginning.size() && isLetter(rtf[beginning.size()])))
        throw AppError("This is not a rich-text document.");
    return RtfReader(rtf).text();
}

} // namespace RichText
