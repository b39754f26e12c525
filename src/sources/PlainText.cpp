#include "PlainText.h"

#include "AppError.h"
#include "Utf8.h"

#include <array>
#include <memory>

namespace PlainText {

namespace {

// What a text may take at most, so that an endless stream fails before the memory does.
constexpr std::size_t mostBytes = std::size_t{1} << 30;

struct Close
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

std::string read(const std::filesystem::path& path)
{
    std::error_code error;
    // A folder, a pipe or a device could block or never end.
    if (!std::filesystem::is_regular_file(path, error))
        throw AppError("Unsupported file type.");
    const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rb"));
    if (!file)
        throw AppError("Unsupported file type.");
    return read(*file);
}

std::string read(std::FILE& stream)
{
    std::string bytes;
    std::array<char, 65536> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), &stream)) {
        if (bytes.size() + count > mostBytes)
            throw AppError("The text is longer than 1 GiB.");
        bytes.append(buffer.data(), count);
    }
    if (std::ferror(&stream) != 0)
        throw AppError("The text could not be read.");
    return Utf8::decoded(std::move(bytes));
}

} // namespace PlainText
