// Measures the tray application as a process on a desktop of its own (Xvfb at 1280 by 900 with
// openbox and a panel): how soon it is there, what it takes while it has nothing to do, how soon it
// shows and how soon it is gone.

#include "DesktopSession.h"
#include "Figure.h"
#include "ResultRow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QThread>

#include <signal.h>

#include <stdexcept>

namespace {

constexpr int rounds = 20;

/// A line of one of the files that the system keeps of a process, as a number.
long numberOf(const QString& file, const QByteArray& name)
{
    QFile status(file);
    if (!status.open(QIODevice::ReadOnly))
        throw std::runtime_error("The process has ended.");
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').front().toLong();
    }
    throw std::runtime_error("The system does not tell " + name.toStdString());
}

class Launch
{
public:
    Launch()
    {
        QFile model(m_model);
        if (!model.open(QIODevice::WriteOnly)) // it is never loaded
            throw std::runtime_error("The model cannot be written.");
        if (nextLine(m_panel) != "ready")
            throw std::runtime_error("The panel does not work.");
    }

    /// Seconds until the panel has the icon.
    double start()
    {
        return Figure::seconds([this] {
            m_process = &m_session.start(PITHWISE_PROGRAM, {"--model", m_model});
            nextLine(m_panel);
        });
    }

    /// Seconds until the process has ended.
    double end()
    {
        return Figure::seconds([this] {
            ::kill(static_cast<pid_t>(m_process->processId()), SIGTERM);
            m_process->waitForFinished();
        });
    }

    /// Seconds of a command that shows or hides the popover, until the window is there or gone.
    double toggle()
    {
        const bool wasShown = isShown();
        return Figure::seconds([&] {
            m_session.run(PITHWISE_PROGRAM, {"toggle"});
            m_session.waitUntil("the popover", [&] { return isShown() != wasShown; });
        });
    }

    double megabytes() const
    {
        return static_cast<double>(numberOf(folder() + "status", "VmRSS:")) / 1024;
    }

    /// Of all threads, by themselves or not.
    long contextSwitches() const
    {
        long sum = 0;
        const QDir threads(folder() + "task");
        for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QString status = threads.filePath(thread + "/status");
            sum += numberOf(status, "voluntary_ctxt_switches:");
            sum += numberOf(status, "nonvoluntary_ctxt_switches:");
        }
        return sum;
    }

private:
    QString folder() const { return QStringLiteral("/proc/%1/").arg(m_process->processId()); }

    bool isShown()
    {
        const QByteArray list = m_session.run("xprop", {"-root", "_NET_CLIENT_LIST"});
        return list.contains("0x");
    }

    static QByteArray nextLine(QProcess& process)
    {
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead())
                throw std::runtime_error("A program says nothing.");
        }
        return process.readLine().trimmed();
    }

    DesktopSession m_session;
    int m_argumentCount = 1;
    char m_name[6] = "bench";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
    const QString m_model = m_session.path("model.gguf");
    QProcess& m_panel = m_session.start(PITHWISE_PANEL, {"1200", "0"});
    QProcess* m_process = nullptr;
};

std::string milliseconds(const std::vector<double>& times)
{
    return Figure::fixed(Figure::median(times) * 1000, 0) + " and " +
           Figure::fixed(Figure::percentile(times, 0.95) * 1000, 0) + " ms";
}

void measureStartAndEnd(Launch& launch)
{
    std::vector<double> starts;
    std::vector<double> ends;
    for (int i = 0; i < rounds; ++i) {
        starts.push_back(launch.start());
        ends.push_back(launch.end());
    }
    ResultRow::print("process start to icon", milliseconds(starts), "< 150 ms",
                     Figure::median(starts) < 0.15);
    ResultRow::print("SIGTERM to the end of the process", milliseconds(ends), "< 1000 ms",
                     Figure::median(ends) < 1);
}

/// `state` is what the application has done before.
void measureIdle(const Launch& launch, const std::string& state)
{
    constexpr unsigned long settling = 2;
    constexpr unsigned long seconds = 10;
    QThread::sleep(settling);
    constexpr double mostMegabytes = 60;
    const double megabytes = launch.megabytes();
    ResultRow::print("resident, " + state, Figure::fixed(megabytes, 1) + " MiB", "<= 60 MiB",
                     megabytes <= mostMegabytes);
    const long before = launch.contextSwitches();
    QThread::sleep(seconds);
    const long switches = launch.contextSwitches() - before;
    ResultRow::print("wake-ups in 10 s, " + state, std::to_string(switches), "0", switches == 0);
}

void measureShowing(Launch& launch)
{
    std::vector<double> shows;
    for (int i = 0; i < rounds; ++i) {
        shows.push_back(launch.toggle());
        launch.toggle();
    }
    ResultRow::print("pithwise toggle to window", milliseconds(shows));
}

} // namespace

int main()
try {
    Launch launch;
    measureStartAndEnd(launch);
    launch.start();
    measureIdle(launch, "never shown");
    measureShowing(launch);
    measureIdle(launch, "shown and hidden");
    return 0;
} catch (const std::exception& error) {
    std::cerr << "launch-bench: " << error.what() << '\n';
    return 1;
}
