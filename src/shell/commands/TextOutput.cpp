#include "TextOutput.h"

#include "AppError.h"
#include "ControlCharacters.h"
#include "Terminal.h"
#include "Utf8.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace TextOutput {

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
    std::size_t length = 0; // of the harmless beginning
    while (length < text.size()) {
        const std::size_t skipped = ControlCharacters::lengthAt(text.substr(length));
        if (skipped == 0 || text[length] == '\n' || text[length] == '\t') {
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

std::string oneLine(std::string text)
{
    const std::string decoded = Utf8::decoded(std::move(text));
    std::string line;
    line.reserve(decoded.size());
    for (std::string_view rest = decoded; !rest.empty();) {
        const std::size_t replaced = ControlCharacters::lengthAt(rest);
        line += replaced > 0 ? '?' : rest[0];
        rest.remove_prefix(replaced > 0 ? replaced : 1);
    }
    return line;
}

} // namespace TextOutput
