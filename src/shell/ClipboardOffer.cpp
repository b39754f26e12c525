#include "ClipboardOffer.h"

#include "AppError.h"
#include "BackgroundTask.h"
#include "Pasteboard.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <system_error>

namespace ClipboardOffer {

static constexpr std::chrono::seconds limit(2);

void put(const std::string& text)
{
    // The program itself once more: a mere fork would have none of the threads that this process
    // may have by now, but the locks they held.
    std::string answer;
    try {
        answer = BackgroundTask::runProgram({"offer-clipboard"}, text);
    } catch (const std::system_error&) {
        // told below
    }
    if (answer.empty())
        throw AppError("The text could not be put on the clipboard.");
}

int serve()
{
    const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
    const auto pasteboard = Pasteboard::create();
    pasteboard->clear();
    pasteboard->writeText(text);
    if (!pasteboard->plainText(limit)) // there is no desktop
        return 1;
    std::puts("offered");
    // Whoever waits for the end of the output must not wait for the rest.
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return 1;
    if (!pasteboard->handOver(limit))
        pasteboard->serveUntilReplaced();
    return 0;
}

} // namespace ClipboardOffer
