#include "ClipboardOffer.h"

#include "AppError.h"
#include "BackgroundTask.h"
#include "ClipboardContents.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <system_error>
#include <utility>

namespace ClipboardOffer {

static constexpr std::chrono::seconds limit(2);

static void offer(std::vector<std::string> arguments, const std::string& input)
{
    // Starts the program once more. A mere fork would have none of the threads that this process
    // may have by now, but all the locks that they held.
    arguments.insert(arguments.begin(), "offer-clipboard");
    std::string answer;
    try {
        answer = BackgroundTask::runProgram(arguments, input);
    } catch (const std::system_error&) {
        // the error below tells it
    }
    if (answer.empty())
        throw AppError("The text could not be put on the clipboard.");
}

void put(const std::string& text)
{
    offer({}, text);
}

void put(const std::vector<Pasteboard::Item>& items)
{
    offer({"--contents"}, ClipboardContents::written(items).toStdString());
}

int serve(bool isText)
{
    std::string input{std::istreambuf_iterator<char>(std::cin), {}};
    const auto pasteboard = Pasteboard::create();
    pasteboard->clear();
    if (isText) {
        pasteboard->writeText(std::move(input));
    } else {
        for (Pasteboard::Item& item : ClipboardContents::read(QByteArray::fromStdString(input)))
            pasteboard->write(std::move(item));
    }
    if (pasteboard->snapshot(limit).items.empty()) // there is no desktop
        return 1;
    std::puts("offered");
    // Whoever waits for the end of the output must not have to wait for the rest of this.
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return 1;
    if (!pasteboard->handOver(limit))
        pasteboard->serveUntilReplaced();
    return 0;
}

} // namespace ClipboardOffer
