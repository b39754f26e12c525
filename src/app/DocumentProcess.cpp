#include "DocumentProcess.h"

#include "AppError.h"
#include "ChildProcess.h"
#include "DocumentReader.h"
#include "LibraryMessages.h"
#include "Utf8.h"

#include <new>
#include <utility>

namespace DocumentProcess {

namespace {

constexpr int exitText = 0;
constexpr int exitSentence = 3; // a status that no crash or usage error has

int print(std::FILE& stream, const std::string& text, int status)
{
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), &stream) == text.size() &&
                           std::fflush(&stream) == 0;
    return isWritten ? status : 1;
}

} // namespace

std::string read(const std::filesystem::path& file, const std::string& program,
                 std::chrono::milliseconds limit)
{
    ChildProcess::Result result =
        ChildProcess::run({program, command, std::filesystem::absolute(file).native()}, limit);
    if (result.end == ChildProcess::End::timedOut)
        throw AppError("Reading the document takes too long.");
    if (result.end == ChildProcess::End::exited && result.exitStatus == exitText)
        return std::move(result.output);
    if (result.end == ChildProcess::End::exited && result.exitStatus == exitSentence)
        throw AppError(Utf8::decoded(std::move(result.output)));
    throw AppError("Reading the document failed.");
}

int serve(const std::filesystem::path& file, std::FILE& stream)
{
    ChildProcess::endWithParent();
    const LibraryMessages quiet;
    try {
        return print(stream, DocumentReader::read(file), exitText);
    } catch (const std::bad_alloc&) {
        return print(stream, "There is not enough memory.", exitSentence);
    } catch (const std::exception& error) {
        return print(stream, error.what(), exitSentence);
    }
}

} // namespace DocumentProcess
