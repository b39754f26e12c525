// Measures taking the selection of other programs and pictures of what they show, on a desktop of
// its own (Xvfb at 1280 by 900 with openbox).

#include "DesktopSession.h"
#include "Figure.h"
#include "ResultRow.h"
#include "ScreenGrab.h"
#include "Screenshot.h"
#include "SelectionGrabber.h"

#include <QApplication>
#include <QCoroTask>

#include <signal.h>

#include <functional>
#include <stdexcept>

namespace {

constexpr int rounds = 100;
constexpr int frozenRounds = 10; // of nearly a second
const QString words = QStringLiteral("The meeting decided on the budget. ").repeated(30);

/// A desktop with one foreign application in front.
class Desktop
{
public:
    QProcess& start(const QString& program, const QStringList& arguments, const QString& title)
    {
        QProcess& process = m_session.start(program, arguments);
        const std::uint32_t window = m_session.waitForWindow({"--name", title});
        m_session.waitUntil("a window to come to the front",
                            [&] { return m_session.isInFront(window); });
        return process;
    }

    QProcess& startApp(const QStringList& options, const QStringList& variables = {})
    {
        const QStringList program = {PITHWISE_DESKTOP_APP, "--title", "Foreign"};
        return start("env", variables + program + options, "^Foreign$");
    }

    void selectAll() { m_session.xdotool({"key", "ctrl+a"}); }

    /// The times of grabs that succeed, once one has: applications get to know that they are asked
    /// for their selection a moment after they have started.
    std::vector<double> grabs()
    {
        m_session.waitUntil("a grab that succeeds", [this] { return grab().has_value(); });
        std::vector<double> times;
        for (int i = 0; i < rounds; ++i)
            times.push_back(Figure::seconds([this] {
                if (!grab())
                    throw std::runtime_error("A grab failed.");
            }));
        return times;
    }

    std::optional<std::string> grab() { return QCoro::waitFor(SelectionGrabber::grab(m_ports)); }

    DesktopSession& session() { return m_session; }

private:
    DesktopSession m_session;
    int m_argumentCount = 1;
    char m_name[6] = "bench";
    char* m_arguments[2] = {m_name, nullptr};
    QApplication m_application{m_argumentCount, m_arguments};
    SelectionGrabber::Ports m_ports = SelectionGrabber::systemPorts();
};

std::string milliseconds(double seconds)
{
    return Figure::fixed(seconds * 1000, 1);
}

/// Prints the median, which has the target, and the 95th percentile.
void report(const std::string& what, const std::vector<double>& times, double target)
{
    const double median = Figure::median(times);
    const std::string figure =
        milliseconds(median) + " and " + milliseconds(Figure::percentile(times, 0.95)) + " ms";
    ResultRow::print(what, figure, "< " + Figure::fixed(target * 1000, 0) + " ms", median < target);
}

constexpr double commonTarget = 0.05;
constexpr double worstTarget = 0.9;

void measureGtkEditor()
{
    Desktop desktop;
    QFile file(desktop.session().path("note.txt"));
    if (!file.open(QIODevice::WriteOnly) || file.write(words.toUtf8()) < 0)
        throw std::runtime_error("The note cannot be written.");
    file.close();
    desktop.start("mousepad", {"--disable-server", file.fileName()}, "Mousepad$");
    desktop.selectAll();
    report("grab through AT-SPI, GTK 3 editor", desktop.grabs(), commonTarget);
}

void measureQtEditor()
{
    Desktop desktop;
    desktop.session().run("dbus-send", {"--session", "--print-reply", "--dest=org.a11y.Bus",
                                        "/org/a11y/bus", "org.a11y.Bus.GetAddress"});
    desktop.startApp({"--editor", words}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
    desktop.selectAll();
    report("grab through AT-SPI, Qt editor", desktop.grabs(), commonTarget);
}

void measurePrimary()
{
    Desktop desktop; // where no program tells its selection
    desktop.startApp({"--editor", words});
    desktop.selectAll();
    report("grab through PRIMARY", desktop.grabs(), commonTarget);
}

void measureCopy()
{
    Desktop desktop;
    desktop.startApp({"--copies", words});
    report("grab through the simulated copy", desktop.grabs(), commonTarget);
}

void measureFrozen()
{
    Desktop desktop;
    const QProcess& editor = desktop.startApp({"--editor", words});
    desktop.selectAll();
    desktop.session().waitUntil("a grab that succeeds",
                                [&desktop] { return desktop.grab().has_value(); });
    ::kill(static_cast<pid_t>(editor.processId()), SIGSTOP);
    std::vector<double> times;
    for (int i = 0; i < frozenRounds; ++i)
        times.push_back(Figure::seconds([&desktop] { desktop.grab(); }));
    report("grab from a frozen application", times, worstTarget);
}

/// A picture of an editor full of text, until its file is written.
void measureCaptures()
{
    Desktop desktop;
    desktop.startApp({"--editor", words.repeated(5)});
    desktop.session().xdotool(
        {"search", "--name", "^Foreign$", "windowsize", "--sync", "900", "700"});
    const auto screenshot = Screenshot::create();
    const auto measure = [](const std::function<bool()>& take) {
        std::vector<double> times;
        for (int i = 0; i < rounds; ++i) {
            times.push_back(Figure::seconds([&take] {
                if (!take())
                    throw std::runtime_error("A capture failed.");
            }));
        }
        return times;
    };
    report("capture of a window of 900 by 700", measure([&] {
               const auto window = ScreenGrab::frontWindowID();
               return window && screenshot->takeWindow(*window).has_value();
           }),
           commonTarget);
    report("capture of the screen", measure([&] { return screenshot->takeScreen().has_value(); }),
           commonTarget);
}

} // namespace

int main()
{
    measureGtkEditor();
    measureQtEditor();
    measurePrimary();
    measureCopy();
    measureFrozen();
    measureCaptures();
}
