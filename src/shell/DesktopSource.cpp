#include "DesktopSource.h"

#include "AppError.h"
#include "BackgroundTask.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"
#include "Utf8.h"
#include "WhiteSpace.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <chrono>
#include <thread>

namespace DesktopSource {

namespace {

/// Grabs and hands over the text, then stays while the clipboard holds what has been put back.
void serveSelection(const BackgroundTask::Answer& answer)
{
    int argumentCount = 1;
    char name[] = "pithwise";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    const SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    const std::uint64_t before = ports.pasteboard->changeCount();
    answer(QCoro::waitFor(SelectionGrabber::grab(ports)).value_or(""));
    const std::uint64_t after = ports.pasteboard->changeCount();
    while (after != before && ports.pasteboard->changeCount() == after)
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
}

std::string readClipboard()
{
    const auto pasteboard = Pasteboard::create();
    std::string text = Utf8::decoded(pasteboard->plainText(std::chrono::seconds(2)).value_or(""));
    if (WhiteSpace::trimmed(text).empty())
        throw AppError("The clipboard has no text.");
    return text;
}

} // namespace

std::string read(Kind kind)
{
    if (kind == Kind::clipboard)
        return readClipboard();
    std::string text = BackgroundTask::run(serveSelection);
    if (text.empty())
        throw AppError("No text is selected.");
    return text;
}

} // namespace DesktopSource
