#include "DesktopSession.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

constexpr int patience = 60'000; // milliseconds

[[noreturn]] void fail(const QString& sentence)
{
    throw std::runtime_error(sentence.toStdString());
}

} // namespace

DesktopSession::DesktopSession(const QProcessEnvironment& environment) : m_environment(environment)
{}

DesktopSession::DesktopSession(const Options& options)
    // So that the destructor ends what was started even where the rest of this fails.
    : DesktopSession(QProcessEnvironment::systemEnvironment())
{
    prepareFolders();
    startServer(options);
    startBus(); // after the server: what the bus starts inherits the bus's own environment
    if (!options.monitors.empty())
        setMonitors(options.monitors);
    if (options.windowManager == WindowManager::openbox)
        startWindowManager("openbox", {"--sm-disable"});
    if (options.windowManager == WindowManager::compositing)
        startWindowManager("xfwm4", {"--compositor=on"});
}

DesktopSession::~DesktopSession()
{
    // The youngest first, so that no program outlives what it talks to.
    for (auto process = m_processes.rbegin(); process != m_processes.rend(); ++process)
        end(**process);
    endOrphans();
    for (const auto& [name, value] : m_replaced) {
        if (value)
            qputenv(name.constData(), *value);
        else
            qunsetenv(name.constData());
    }
}

void DesktopSession::prepareFolders()
{
    if (!m_folder.isValid())
        fail("There is no temporary folder to be had.");
    const std::pair<QString, QString> folders[] = {{"HOME", "home"},
                                                   {"XDG_RUNTIME_DIR", "runtime"},
                                                   {"XDG_CONFIG_HOME", "home/.config"},
                                                   {"XDG_DATA_HOME", "home/.local/share"},
                                                   {"XDG_CACHE_HOME", "home/.cache"}};
    for (const auto& [variable, name] : folders) {
        QDir().mkpath(path(name));
        setEnvironment(variable, path(name));
    }
    QFile::setPermissions(path("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // Nothing of the desktop that the tests may have been started from.
    for (const char* name :
         {"WAYLAND_DISPLAY", "XAUTHORITY", "SESSION_MANAGER", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR",
          "QT_SCREEN_SCALE_FACTORS", "XDG_CURRENT_DESKTOP", "DESKTOP_STARTUP_ID"})
        setEnvironment(name, std::nullopt);
    setEnvironment("XDG_SESSION_TYPE", "x11");
}

void DesktopSession::setEnvironment(const QString& name, const std::optional<QString>& value)
{
    const QByteArray key = name.toLocal8Bit();
    m_replaced.emplace_back(key, qEnvironmentVariableIsSet(key.constData())
                                     ? std::optional(qgetenv(key.constData()))
                                     : std::nullopt);
    if (value) {
        m_environment.insert(name, *value);
        qputenv(key.constData(), value->toLocal8Bit());
    } else {
        m_environment.remove(name);
        qunsetenv(key.constData());
    }
}

QProcess& DesktopSession::start(const QString& program, const QStringList& arguments)
{
    QProcess& process = *m_processes.emplace_back(std::make_unique<QProcess>());
    process.setProcessEnvironment(m_environment);
    process.setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // also when a test crashes
        ::signal(SIGINT, SIG_DFL);
    });
    process.start(program, arguments);
    if (!process.waitForStarted(patience))
        fail(program + " cannot be started.");
    return process;
}

void DesktopSession::end(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(2'000)) {
        process.kill();
        process.waitForFinished();
    }
}

void DesktopSession::waitForEnd(QProcess& process)
{
    if (!process.waitForFinished(patience) && process.state() != QProcess::NotRunning)
        fail(process.program() + " does not end.");
}

QByteArray DesktopSession::run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        fail(program + " " + arguments.join(' ') + " failed: " + process.errorString() + " " +
             process.readAllStandardError());
    return process.readAllStandardOutput();
}

bool DesktopSession::isInFront(std::uint32_t window)
{
    // Some window managers add a second value.
    const QByteArray active = property(0, "_NET_ACTIVE_WINDOW").replace(',', ' ') + ' ';
    return active.contains(" 0x" + QByteArray::number(window, 16) + ' ');
}

void DesktopSession::waitUntil(const char* what, const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(patience);
    // Whoever looks all the time takes the processor from what is waited for.
    constexpr unsigned long longestPause = 40;
    for (unsigned long pause = 5; !condition(); pause = std::min(2 * pause, longestPause)) {
        if (deadline.hasExpired())
            fail(QString("Waited in vain: ") + what + ".");
        QThread::msleep(pause);
    }
}

QByteArray DesktopSession::property(std::uint32_t window, const QString& name)
{
    QStringList arguments = {"-notype", name};
    if (window == 0)
        arguments.prepend("-root");
    else
        arguments = QStringList{"-id", QString::number(window)} + arguments;
    return run("xprop", arguments).trimmed();
}

std::uint32_t DesktopSession::waitForWindow(const QStringList& conditions)
{
    std::uint32_t window = 0;
    const std::string what = "a window with " + conditions.join(' ').toStdString();
    waitUntil(what.c_str(), [&] {
        QProcess search;
        search.setProcessEnvironment(m_environment);
        search.start("xdotool", QStringList{"search", "--onlyvisible"} + conditions);
        search.waitForFinished(patience);
        for (const QByteArray& line : search.readAllStandardOutput().split('\n')) {
            window = line.toUInt();
            if (window != 0 && (!m_isManaged || isListed(window)))
                return true;
        }
        return false;
    });
    return window;
}

bool DesktopSession::isListed(std::uint32_t window)
{
    const QByteArray listed = property(0, "_NET_CLIENT_LIST") + ',';
    return listed.contains(" 0x" + QByteArray::number(window, 16) + ',');
}

QByteArray DesktopSession::firstLine(QProcess& process)
{
    const QDeadlineTimer deadline(patience);
    while (!process.canReadLine()) {
        if (deadline.hasExpired() || process.state() == QProcess::NotRunning)
            fail(process.program() + " did not start: " + process.readAllStandardError());
        process.waitForReadyRead(100);
    }
    return process.readLine().trimmed();
}

void DesktopSession::startServer(const Options& options)
{
    const QString screen = QString("%1x%2x24").arg(options.size.width()).arg(options.size.height());
    // With its number on standard output the server finds a free one itself.
    m_server =
        &start("Xvfb", {"-displayfd", "1", "-screen", "0", screen, "-dpi",
                        QString::number(options.dotsPerInch), "-nolisten", "tcp", "-noreset"});
    m_display = ":" + firstLine(*m_server);
    setEnvironment("DISPLAY", m_display);
}

void DesktopSession::startBus()
{
    QProcess& bus =
        start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
    setEnvironment("DBUS_SESSION_BUS_ADDRESS", QString::fromLocal8Bit(firstLine(bus)));
}

void DesktopSession::startWindowManager(const QString& program, const QStringList& arguments)
{
    start(program, arguments);
    waitUntil("the window manager",
              [&] { return property(0, "_NET_SUPPORTING_WM_CHECK").contains("window id # 0x"); });
    // It tells before it listens: only when it does as it is told does it take windows in.
    waitUntil("the window manager at work", [&] {
        xdotool({"set_num_desktops", "2"});
        return property(0, "_NET_NUMBER_OF_DESKTOPS").endsWith("= 2");
    });
    m_isManaged = true;
}

void DesktopSession::setMonitors(const std::vector<QRect>& monitors)
{
    // The first takes the server's only output; the others have none.
    QString output = "screen";
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const QRect& area = monitors[i];
        run("xrandr", {"--setmonitor", QString("monitor%1").arg(i),
                       QString("%1/%2x%3/%4+%5+%6")
                           .arg(area.width())
                           .arg(area.width() / 4)
                           .arg(area.height())
                           .arg(area.height() / 4)
                           .arg(area.x())
                           .arg(area.y()),
                       output});
        output = "none";
    }
}

void DesktopSession::freezeServer()
{
    ::kill(static_cast<pid_t>(m_server->processId()), SIGSTOP);
}

void DesktopSession::killServer()
{
    m_server->kill();
    m_server->waitForFinished();
}

void DesktopSession::endOrphans() const
{
    // What the bus or a program has started in turn is known by the folder in its environment.
    const QByteArray mark = "XDG_RUNTIME_DIR=" + QFile::encodeName(path("runtime"));
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const pid_t process = static_cast<pid_t>(entry.toInt());
        QFile environment("/proc/" + entry + "/environ");
        if (process <= 0 || process == ::getpid() || !environment.open(QIODevice::ReadOnly))
            continue;
        if (environment.readAll().split('\0').contains(mark))
            ::kill(process, SIGKILL);
    }
}
