#include "ClipboardOffer.h"

#include "AppError.h"
#include "Child.h"
#include "ClipboardContents.h"

#include <chrono>
#include <iostream>
#include <iterator>
#include <system_error>
#include <utility>

namespace ClipboardOffer {

static constexpr std::chrono::seconds limit(2);

static void offer(std::vector<std::string> arguments, const std::string& input)
{
    arguments.insert(arguments.begin(), {Child::thisProgram(), command});
    std::string answer;
    try {
        answer = Child::detach(std::move(arguments), input);
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
    Child::tell("offered");
    if (!pasteboard->handOver(limit))
        pasteboard->serveUntilReplaced();
    return 0;
}

} // namespace ClipboardOffer
