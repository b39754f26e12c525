#include "AppServices.h"

#include "Child.h"
#include "ClipboardText.h"
#include "DocumentProcess.h"
#include "DocumentsFolder.h"
#include "HTMLText.h"
#include "ModelManager.h"
#include "Pasteboard.h"
#include "ScreenPermission.h"
#include "SelectionGrabber.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>
#include <variant>

AppServices AppServices::system()
{
    const SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    return {
        .readDocument =
            [](const std::filesystem::path& file) {
                return DocumentProcess::read(file, Child::thisProgram());
            },
        .captureText = [](ScreenGrab::Kind kind) { return ScreenGrab::captureText(kind); },
        .clipboardText = ClipboardText::read,
        .fetchPage = [](std::string address) { return HTMLText::fetch(std::move(address)); },
        .grabSelection = [ports] { return SelectionGrabber::grab(ports); },
        .mayCaptureScreen = [] { return ScreenPermission::create()->isGranted(); },
        .isModelReady =
            [] {
                return std::holds_alternative<ModelManager::Ready>(ModelManager::shared().state());
            },
        .generate = Pithwise::sharedEngine(),
        .pasteboard = Pasteboard::create(),
        .appendToNote = DailyNote::append,
        .documentsFolder = DocumentsFolder::path,
        .now = [] { return QDateTime::currentDateTime(); },
        .later =
            [](std::chrono::milliseconds delay, std::function<void()> function) {
                QTimer::singleShot(delay, QCoreApplication::instance(), std::move(function));
            },
    };
}
