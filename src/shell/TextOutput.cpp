#include "TextOutput.h"

#include "AppError.h"
#include "Terminal.h"

#include <cerrno>
#include <system_error>

namespace TextOutput {

/// How many bytes at the start of `text` are a control code that a terminal could take for the
/// start of a command: C0 but for tabs and line feeds, delete, and C1.
static std::size_t controlCode(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if ((first < 0x20 && first != '\n' && first != '\t') || first == 0x7F)
        return 1;
    const bool isC1 =
        first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
    return isC1 ? 2 : 0;
}

static AppError notWritten()
{
    return AppError("The output could not be written: " + std::generic_category().message(errno) +
                    ".");
}

static void writeAll(std::FILE& stream, std::string_view text)
{
    if (std::fwrite(text.data(), 1, text.size(), &stream) != text.size())
        throw notWritten();
}

void write(std::FILE& stream, std::string_view text)
{
    if (!Terminal::isTerminal(stream)) {
        writeAll(stream, text);
        return;
    }
    std::size_t length = 0; // of what is harmless
    while (length < text.size()) {
        const std::size_t skipped = controlCode(text.substr(length));
        if (skipped == 0) {
            ++length;
            continue;
        }
        writeAll(stream, text.substr(0, length));
        text.remove_prefix(length + skipped);
        length = 0;
    }
    writeAll(stream, text);
}

void flush(std::FILE& stream)
{
    if (std::fflush(&stream) != 0 || std::ferror(&stream) != 0)
        throw notWritten();
}

} // namespace TextOutput
