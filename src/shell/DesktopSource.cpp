#include "DesktopSource.h"

#include "AppError.h"
#include "BackgroundTask.h"
#include "ClipboardText.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"
#include "WhiteSpace.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <chrono>

namespace DesktopSource {

namespace {

/// Grabs the text and answers with it. Then stays while the clipboard holds what the grab has put
/// back, unless a clipboard manager takes that over.
void serveSelection(const BackgroundTask::Answer& answer)
{
    int argumentCount = 1;
    char name[] = "pithwise";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    const SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    answer(QCoro::waitFor(SelectionGrabber::grab(ports)).value_or(""));
    if (!ports.pasteboard->handOver(std::chrono::seconds(2)))
        ports.pasteboard->serveUntilReplaced();
}

std::string readClipboard()
{
    std::string text = ClipboardText::read().value_or("");
    if (WhiteSpace::trimmed(text).empty())
        throw AppError("The clipboard has no text.");
    return text;
}

} // namespace

std::string selection()
{
    return BackgroundTask::run(serveSelection);
}

std::string read(Kind kind)
{
    if (kind == Kind::clipboard)
        return readClipboard();
    std::string text = selection();
    if (text.empty())
        throw AppError("No text is selected.");
    return text;
}

} // namespace DesktopSource
