#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// A desktop of its own: an X server, a session bus, folders in place of the user's and a window
/// manager. While it lives, this process's environment names them too. Many can run on a machine
/// at once, one in a process. Whatever was started in it ends with it.
///
/// Calls wait for at most a minute and throw std::runtime_error with a sentence when in vain. One
/// thread. Requires: an application object with windows is made after it and destroyed before it.
class DesktopSession
{
public:
    enum class WindowManager { none, openbox, compositing };

    struct Options
    {
        QSize size = {1280, 900}; // of the screen, in pixels
        int dotsPerInch = 96;
        /// In pixels; empty for one monitor as large as the screen.
        std::vector<QRect> monitors = {};
        WindowManager windowManager = WindowManager::openbox;
    };

    DesktopSession() : DesktopSession(Options{}) {}
    explicit DesktopSession(const Options& options);
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    /// The X server's name, as in DISPLAY.
    const QByteArray& display() const { return m_display; }

    /// Whether its X server runs.
    bool isRunning() const { return m_server->state() != QProcess::NotRunning; }

    bool isManaged() const { return m_isManaged; }

    /// A file or folder among those that stand in place of the user's; gone with the session.
    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// What programs of this session run in.
    const QProcessEnvironment& environment() const { return m_environment; }

    /// Starts a program and returns it running. It is killed with the session at the latest.
    QProcess& start(const QString& program, const QStringList& arguments = {});

    /// Ends one that `start` returned: asks, and kills it where that is no use.
    void end(QProcess& process);

    /// Returns once `process` has ended by itself.
    void waitForEnd(QProcess& process);

    /// Runs a program to its end and returns its standard output. Throws when it fails.
    QByteArray run(const QString& program, const QStringList& arguments = {});

    QByteArray xdotool(const QStringList& arguments) { return run("xdotool", arguments); }

    /// The id of the first visible window that `xdotool search` finds with these conditions
    /// ({"--name", "^Letter$"}), once the window manager, if there is one, has it on its list.
    std::uint32_t waitForWindow(const QStringList& conditions);

    /// Whether the window manager has taken `window` in.
    bool isListed(std::uint32_t window);

    /// Whether the window manager calls `window` the active one.
    bool isInFront(std::uint32_t window);

    /// Returns once `condition` holds; `what` names it in the error.
    void waitUntil(const char* what, const std::function<bool()>& condition);

    /// What `xprop` prints of a property of `window`, or of the root window for 0.
    QByteArray property(std::uint32_t window, const QString& name);

    /// Freezes the X server for the rest of the session, as a driver that hangs would. Whoever asks
    /// it anything waits.
    void freezeServer();

    /// Kills the X server, as a crash of it would.
    void killServer();

private:
    explicit DesktopSession(const QProcessEnvironment& environment);
    void prepareFolders();
    void setEnvironment(const QString& name, const std::optional<QString>& value);
    QByteArray firstLine(QProcess& process);
    void startServer(const Options& options);
    void startBus();
    void startWindowManager(const QString& program, const QStringList& arguments);
    void setMonitors(const std::vector<QRect>& monitors);
    void endOrphans() const;

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    std::vector<std::pair<QByteArray, std::optional<QByteArray>>> m_replaced; // of this process
    std::vector<std::unique_ptr<QProcess>> m_processes;                       // oldest first
    QProcess* m_server = nullptr;
    QByteArray m_display;
    bool m_isManaged = false;
};
