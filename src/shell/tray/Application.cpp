#include "Application.h"

#include "ClipboardOffer.h"
#include "ContentView.h"
#include "CurtainedScreenshot.h"
#include "FileChooser.h"
#include "HotKey.h"
#include "Instance.h"
#include "LastingPasteboard.h"
#include "MainThreadQueue.h"
#include "Screenshot.h"
#include "SelectionGrabber.h"

#include <QCoreApplication>
#include <QDesktopServices>

#include <exception>
#include <variant>

static ModelManager::Options modelOptions(const std::filesystem::path& model)
{
    ModelManager::Options options;
    if (!model.empty())
        options.path = model;
    return options;
}

/// Takes little time, because whoever ends the program waits for it.
static void keepClipboard(LastingPasteboard& pasteboard)
{
    constexpr std::chrono::milliseconds limit(150);
    try {
        const std::vector<Pasteboard::Item> items = pasteboard.leftover(limit);
        if (!items.empty())
            ClipboardOffer::put(items);
    } catch (const std::exception&) {
        // There is nobody left to tell about it.
    }
}

Application::Application(const std::filesystem::path& model)
    : m_model(modelOptions(model)),
      m_queue(MainThreadQueue::create()),
      m_pasteboard(std::make_shared<LastingPasteboard>(Pasteboard::create())),
      m_grabPasteboard(std::make_shared<LastingPasteboard>(Pasteboard::create())),
      m_state(services(model)),
      m_delegate(m_state, m_model, m_theme, [this] { return makeContent(); })
{}

Application::~Application()
{
    m_queue->close();
    for (const auto& pasteboard : {m_pasteboard, m_grabPasteboard})
        keepClipboard(*pasteboard);
}

void Application::launch(Instance& instance)
{
    m_delegate.applicationDidFinishLaunching();
    QObject::connect(&instance, &Instance::toggleRequested, &m_delegate,
                     &AppDelegate::togglePopover);
    QObject::connect(&instance, &Instance::showRequested, &m_delegate, &AppDelegate::showPopover);
    QObject::connect(&instance, &Instance::hotkeyRequested, &m_delegate,
                     &AppDelegate::handleHotkey);
}

AppServices Application::services(const std::filesystem::path& model)
{
    AppServices services = AppServices::system();
    services.pasteboard = m_pasteboard;
    SelectionGrabber::Ports ports = SelectionGrabber::systemPorts();
    ports.pasteboard = m_grabPasteboard;
    services.grabSelection = [ports] { return SelectionGrabber::grab(ports); };
    services.captureText = [this](ScreenGrab::Kind kind) { return captureText(kind); };
    services.generate = Pithwise::sharedEngine(model);
    services.isModelReady = [this] {
        return std::holds_alternative<ModelManager::Ready>(m_model.state());
    };
    return services;
}

std::unique_ptr<QWidget> Application::makeContent()
{
    const ContentView::Actions actions = {QCoreApplication::quit,
                                          [](const QUrl& url) { QDesktopServices::openUrl(url); },
                                          HotKey::isGranted};
    auto view = std::make_unique<ContentView>(m_state, m_theme, actions);
    view->follow(m_model);
    QObject::connect(&view->chooser(), &FileChooser::opened, &m_delegate,
                     &AppDelegate::pauseOutsideClicks);
    QObject::connect(&view->chooser(), &FileChooser::closed, &m_delegate,
                     &AppDelegate::resumeOutsideClicks);
    return view;
}

/// Captures the screen without the popover, which comes back while the picture is read.
std::string Application::captureText(ScreenGrab::Kind kind)
{
    CaptureCurtain curtain(m_queue, m_delegate);
    const auto screenshot = Screenshot::create();
    CurtainedScreenshot curtained(*screenshot, curtain);
    return ScreenGrab::captureText(kind, curtained, [&curtain] { curtain.lift(); });
}
