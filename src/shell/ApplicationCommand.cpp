#include "ApplicationCommand.h"

#include "AppError.h"
#include "Application.h"
#include "BackgroundTask.h"
#include "Desktop.h"
#include "HomeFolder.h"
#include "Instance.h"
#include "Interrupt.h"
#include "ModelOption.h"
#include "Mutex.h"
#include "Terminal.h"

#include <QApplication>
#include <QNetworkProxyFactory>
#include <QPixmapCache>

#include <chrono>
#include <iostream>

namespace ApplicationCommand {

namespace {

/// The wish to end the program, which may come before there is an event loop to end.
class QuitRequest
{
public:
    /// Any thread.
    void make()
    {
        const MutexLock lock(m_mutex);
        m_isMade = true;
        if (m_canQuit)
            quit();
    }

    /// From now on there is an application object.
    void allow()
    {
        const MutexLock lock(m_mutex);
        m_canQuit = true;
        if (m_isMade)
            quit();
    }

    /// From now on there is none.
    void forbid()
    {
        const MutexLock lock(m_mutex);
        m_canQuit = false;
    }

private:
    static void quit()
    {
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    }

    Mutex m_mutex;
    bool m_isMade PITHWISE_GUARDED_BY(m_mutex) = false;
    bool m_canQuit PITHWISE_GUARDED_BY(m_mutex) = false;
};

/// What every kind of application object is made with.
struct Arguments
{
    int count = 1;
    char name[9] = "pithwise";
    char* values[2] = {name, nullptr};
};

bool wasDone(Instance::Answer answer)
{
    if (answer == Instance::Answer::silent)
        throw AppError("Pithwise is running but does not answer. End it and start it again.");
    return answer == Instance::Answer::done;
}

/// Whether this process is the application; else the one that is has been asked to toggle.
bool isFirst(Instance& instance)
{
    constexpr int attempts = 3; // the other one may end meanwhile
    for (int i = 0; i < attempts && !instance.claim(); ++i) {
        if (wasDone(Instance::ask(Instance::Request::toggle)))
            return false;
    }
    return true; // where the bus lets nobody have the name too
}

/// Nothing else can be seen of it where the desktop has no tray.
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
    ModelOption::requireFile(model);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    Application application(model);
    application.launch(instance);
    greet();
    return QApplication::exec();
}

} // namespace

int run(const std::string& model)
{
    HomeFolder::path(); // before libraries make folders below what they take for it
    if (!Desktop::isAvailable())
        throw AppError("There is no display to show Pithwise on. On the command line it works "
                       "without one: see \"pithwise --help\".");
    QuitRequest quitRequest;
    // Whatever the main thread waits for or is busy with: whoever ends a session does not wait.
    constexpr std::chrono::milliseconds patience(900);
    // Before Qt starts threads, which would take the signals otherwise.
    const Interrupt interrupt([&quitRequest] { quitRequest.make(); }, patience);
    Arguments arguments;
    const QApplication application(arguments.count, arguments.values);
    // What panels, the accessibility bus and window managers call it.
    QApplication::setApplicationName(QStringLiteral("Pithwise"));
    QGuiApplication::setDesktopFileName(QStringLiteral("local.pithwise.Pithwise"));
    QApplication::setQuitOnLastWindowClosed(false);
    // In kilobytes. Enough for all icons; each file dialog of Qt leaves some more there.
    QPixmapCache::setCacheLimit(2 * 1024);
    quitRequest.allow();
    const int status = runApplication(model);
    quitRequest.forbid();
    return status;
}

int toggle()
{
    Arguments arguments;
    const QCoreApplication application(arguments.count, arguments.values);
    if (!wasDone(Instance::ask(Instance::Request::toggle)))
        throw AppError("Pithwise is not running. Start it with \"pithwise\".");
    return 0;
}

bool askForHotkey()
{
    // In a process of its own, because the bus starts threads.
    const std::string answer = BackgroundTask::run([](const BackgroundTask::Answer& tell) {
        Arguments arguments;
        const QCoreApplication application(arguments.count, arguments.values);
        const Instance::Answer given = Instance::ask(Instance::Request::hotkey);
        tell(std::to_string(static_cast<int>(given)));
    });
    for (const auto possible : {Instance::Answer::done, Instance::Answer::silent}) {
        if (answer == std::to_string(static_cast<int>(possible)))
            return wasDone(possible);
    }
    return false;
}

} // namespace ApplicationCommand
