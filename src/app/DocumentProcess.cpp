#include "DocumentProcess.h"

#include "AppError.h"
#include "Child.h"
#include "DocumentReader.h"
#include "LibraryMessages.h"
#include "MemoryLimit.h"
#include "PageRecord.h"
#include "RecognizedPages.h"
#include "Utf8.h"

#include <QSemaphore>

#include <algorithm>
#include <new>
#include <optional>
#include <thread>
#include <utility>

namespace DocumentProcess {

namespace {

constexpr int exitText = 0;
// Statuses that no crash or usage error has.
constexpr int exitSentence = 3;
constexpr int exitPages = 4; // the text is in the records of the pages

constexpr const char* noMemory = "Reading the document takes too much memory.";

/// One for each read that may go on at once.
QSemaphore& turns()
{
    // Never destroyed: a read may still be waiting when the process ends.
    static auto* const all =
        new QSemaphore(static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U)));
    return *all;
}

int print(std::FILE& stream, const std::string& text, int status)
{
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), &stream) == text.size() &&
                           std::fflush(&stream) == 0;
    return isWritten ? status : 1;
}

/// The pages whose records `output` begins with, which are taken off.
std::optional<RecognizedPages> takePages(std::string& output)
{
    std::optional<RecognizedPages> pages;
    std::string_view rest = output;
    while (std::optional<DocumentReader::ScannedPage> page = PageRecord::take(rest)) {
        if (!pages)
            pages.emplace(page->count);
        if (page->index < pages->count())
            pages->add(page->index, std::move(page->text));
    }
    output.erase(0, output.size() - rest.size());
    return pages;
}

} // namespace

DocumentText read(const std::filesystem::path& file, const std::string& program,
                  std::chrono::milliseconds limit)
{
    turns().acquire();
    const QSemaphoreReleaser turn(turns());
    Child::Result result =
        Child::run({program, command, std::filesystem::absolute(file).native()}, limit);
    const bool hasExited = result.end == Child::End::exited;
    if (hasExited && result.exitStatus == exitText)
        return std::move(result.output);
    const std::optional<RecognizedPages> pages = takePages(result.output);
    if (hasExited && result.exitStatus == exitSentence)
        throw AppError(Utf8::decoded(std::move(result.output)));
    const bool isTimedOut = result.end == Child::End::timedOut;
    if (pages && (isTimedOut || (hasExited && result.exitStatus == exitPages)))
        return {Utf8::decoded(pages->text()), pages->share()};
    throw AppError(isTimedOut ? "Reading the document takes too long."
                              : "Reading the document failed.");
}

int serve(const std::filesystem::path& file, std::FILE& stream)
{
    Child::endWithParent();
    MemoryLimit::set(mostMemory, noMemory, exitSentence);
    const LibraryMessages quiet;
    bool hasPages = false;
    const auto onPage = [&](const DocumentReader::ScannedPage& page) {
        hasPages = true;
        print(stream, PageRecord::written(page), exitPages);
    };
    try {
        const std::string text = DocumentReader::read(file, onPage);
        return hasPages ? print(stream, "", exitPages) : print(stream, text, exitText);
    } catch (const std::bad_alloc&) {
        return print(stream, noMemory, exitSentence);
    } catch (const std::exception& error) {
        return print(stream, error.what(), exitSentence);
    }
}

} // namespace DocumentProcess
