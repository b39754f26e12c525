#include "PlainText.h"

#include "AppError.h"
#include "RegularFile.h"
#include "Utf8.h"

#include <array>

namespace PlainText {

static AppError tooLong()
{
    return AppError("The text is longer than 1 GiB.");
}

std::string read(const std::filesystem::path& path)
{
    const std::optional<RegularFile> file = RegularFile::open(path);
    if (file && file->size() > RegularFile::mostBytes)
        throw tooLong();
    std::optional<std::string> bytes = file ? file->bytes() : std::nullopt;
    if (!bytes)
        throw AppError("Unsupported file type.");
    return Utf8::decoded(*std::move(bytes));
}

std::string read(std::FILE& stream)
{
    std::string bytes;
    std::array<char, 65536> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), &stream)) {
        if (bytes.size() + count > RegularFile::mostBytes)
            throw tooLong();
        bytes.append(buffer.data(), count);
    }
    if (std::ferror(&stream) != 0)
        throw AppError("The text could not be read.");
    return Utf8::decoded(std::move(bytes));
}

} // namespace PlainText
