#include "ApplicationCommand.h"

#include "AppError.h"
#include "Application.h"
#include "Child.h"
#include "Desktop.h"
#include "HomeFolder.h"
#include "Instance.h"
#include "Interrupt.h"
#include "ModelCommand.h"
#include "Mutex.h"
#include "ProgramName.h"
#include "QtApplication.h"
#include "Terminal.h"

#include <QApplication>
#include <QNetworkProxyFactory>
#include <QPixmapCache>

#include <chrono>
#include <iostream>

namespace ApplicationCommand {

namespace {

/// The wish to end the program. It may come before there is an event loop to end.
class QuitRequest
{
public:
    /// Makes the wish. Any thread.
    void make()
    {
        const MutexLock lock(m_mutex);
        m_isMade = true;
        if (m_canQuit)
            quitSoon();
    }

    /// Says that there is an application object from now on.
    void allow()
    {
        const MutexLock lock(m_mutex);
        m_canQuit = true;
        if (m_isMade)
            quitSoon();
    }

    /// Says that there is no application object from now on.
    void forbid()
    {
        const MutexLock lock(m_mutex);
        m_canQuit = false;
    }

private:
    Mutex m_mutex;
    bool m_isMade PITHWISE_GUARDED_BY(m_mutex) = false;
    bool m_canQuit PITHWISE_GUARDED_BY(m_mutex) = false;
};

bool wasDone(Instance::Answer answer)
{
    if (answer == Instance::Answer::silent)
        throw AppError("Pithwise is running but does not answer. End it and start it again.");
    return answer == Instance::Answer::done;
}

/// Returns true if this process becomes the application. Otherwise it has asked the running one to
/// toggle its popover.
bool isFirst(Instance& instance)
{
    constexpr int attempts = 3; // the other one may end in the meantime
    for (int i = 0; i < attempts && !instance.claim(); ++i) {
        if (wasDone(Instance::ask(Instance::Request::toggle)))
            return false;
    }
    return true; // also if the bus lets nobody have the name
}

/// Tells how to use the application. On a desktop without a tray nothing else shows that it is
/// running.
void greet()
{
    if (Terminal::isTerminal(*stdout))
        std::cout << "Pithwise is in the tray. Its icon or \"pithwise toggle\" shows it, Ctrl+C "
                     "here ends it."
                  << std::endl;
}

int runApplication(const std::string& model)
{
    Instance instance;
    if (!isFirst(instance))
        return 0;
    ModelCommand::requireFile(model);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    Application application(model);
    application.launch(instance);
    greet();
    return QApplication::exec();
}

} // namespace

int run(const std::string& model)
{
    HomeFolder::path(); // throws if there is none: libraries would make folders elsewhere
    if (!Desktop::isAvailable())
        throw AppError("There is no display to show Pithwise on. On the command line it works "
                       "without one: see \"pithwise --help\".");
    QuitRequest quitRequest;
    // However busy the main thread is, the process ends after this time: whoever ends a session
    // does not wait.
    constexpr std::chrono::milliseconds patience(900);
    // Made before Qt starts threads, which would otherwise take the signals.
    const Interrupt interrupt([&quitRequest] { quitRequest.make(); }, patience);
    QtArguments arguments;
    const QApplication application(arguments.count, arguments.values);
    // The names by which panels, the accessibility bus and window managers know the application.
    QApplication::setApplicationName(QString::fromUtf8(programName));
    QGuiApplication::setDesktopFileName(QStringLiteral("local.pithwise.Pithwise"));
    QApplication::setQuitOnLastWindowClosed(false);
    // In kilobytes. That is enough for all icons; without a limit, each file dialog of Qt would
    // leave some more there.
    QPixmapCache::setCacheLimit(2 * 1024);
    quitRequest.allow();
    const int status = runApplication(model);
    quitRequest.forbid();
    return status;
}

int toggle()
{
    QtArguments arguments;
    const QCoreApplication application(arguments.count, arguments.values);
    if (!wasDone(Instance::ask(Instance::Request::toggle)))
        throw AppError("Pithwise is not running. Start it with \"pithwise\".");
    return 0;
}

bool askForHotkey()
{
    // In a process of its own, because the bus starts threads.
    const std::string answer = Child::detach({Child::thisProgram(), askingCommand});
    for (const auto possible : {Instance::Answer::done, Instance::Answer::silent}) {
        if (answer == std::to_string(static_cast<int>(possible)))
            return wasDone(possible);
    }
    return false;
}

int tellHotkeyAnswer()
{
    QtArguments arguments;
    const QCoreApplication application(arguments.count, arguments.values);
    const Instance::Answer answer = Instance::ask(Instance::Request::hotkey);
    Child::tell(std::to_string(static_cast<int>(answer)));
    return 0;
}

} // namespace ApplicationCommand
