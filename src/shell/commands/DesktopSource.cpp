#include "DesktopSource.h"

#include "AppError.h"
#include "Child.h"
#include "ClipboardText.h"
#include "Pasteboard.h"
#include "QtApplication.h"
#include "SelectionGrabber.h"
#include "WhiteSpace.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <chrono>

namespace DesktopSource {

static std::string readClipboard()
{
    std::string text = ClipboardText::read().value_or("");
    if (WhiteSpace::trimmed(text).empty())
        throw AppError("The clipboard has no text.");
    return text;
}

int serveSelection()
{
    QtArguments arguments;
    const QCoreApplication application(arguments.count, arguments.values);
    const SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    Child::tell(QCoro::waitFor(SelectionGrabber::grab(ports)).value_or(""));
    if (!ports.pasteboard->handOver(std::chrono::seconds(2)))
        ports.pasteboard->serveUntilReplaced();
    return 0;
}

std::string selection()
{
    return Child::detach({Child::thisProgram(), command});
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
