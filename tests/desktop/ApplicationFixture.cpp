#include "ApplicationFixture.h"

#include "Program.h"
#include "ScreenPicture.h"
#include "Screenshot.h"
#include "StandinModel.h"

#include <QDir>

#include <iostream>

ApplicationFixture::ApplicationFixture() : ApplicationFixture(DesktopSession::Options{}) {}

ApplicationFixture::ApplicationFixture(const DesktopSession::Options& options) : m_session(options)
{}

ApplicationFixture::~ApplicationFixture() = default;

void ApplicationFixture::TearDown()
{
    if (!HasFailure())
        return;
    if (m_process != nullptr)
        std::cerr << m_process->readAllStandardError().toStdString();
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const QString name = QString("%1.%2.png").arg(test.test_suite_name(), test.name());
    QDir().mkpath(PITHWISE_FAILURES);
    const QString file = QDir(PITHWISE_FAILURES).filePath(name);
    if (screen().save(file))
        std::cerr << "The screen is in " << file.toStdString() << ".\n";
}

QString ApplicationFixture::standin(const std::string& script)
{
    QString file = m_session.path("standin.gguf");
    StandinModel::write({StandinModel::split("\n" + script + "\n")}, file.toStdString());
    return file;
}

QString ApplicationFixture::slowModel(const BenchModel::Shape& shape)
{
    QString file = m_session.path("slow.gguf");
    BenchModel::write(file.toStdString(), shape);
    return file;
}

QProcess& ApplicationFixture::launchOn(const QString& model, const QStringList& variables)
{
    QStringList arguments = variables + QStringList(Program::path());
    if (!model.isEmpty())
        arguments += {"--model", model};
    m_process = &m_session.start("env", arguments);
    m_session.waitUntil("the application", [this] { return isAnswering(); });
    return *m_process;
}

QStringList ApplicationFixture::introspection()
{
    return {"--session", "--print-reply", "--dest=local.pithwise.Pithwise",
            "/local/pithwise/Pithwise", "org.freedesktop.DBus.Introspectable.Introspect"};
}

bool ApplicationFixture::isAnswering()
{
    QProcess question;
    question.setProcessEnvironment(m_session.environment());
    question.start("dbus-send", introspection());
    question.waitForFinished();
    return question.exitCode() == 0;
}

int ApplicationFixture::run(const QStringList& arguments)
{
    Program program;
    program.start(arguments);
    const int status = program.finish();
    m_error = program.error().toStdString();
    return status;
}

std::uint32_t ApplicationFixture::popover()
{
    QProcess search;
    search.setProcessEnvironment(m_session.environment());
    search.start("xdotool", {"search", "--onlyvisible", "--class", "^pithwise$"});
    search.waitForFinished();
    // The icon is a window of that class too.
    for (const QByteArray& line : search.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty() && areaOf(line.toUInt()).height() > 100)
            return line.toUInt();
    }
    return 0;
}

void ApplicationFixture::waitUntilShown()
{
    m_session.waitUntil("the popover to be shown", [this] { return isShown(); });
}

void ApplicationFixture::waitUntilHidden()
{
    m_session.waitUntil("the popover to be hidden", [this] { return !isShown(); });
}

QRect ApplicationFixture::areaOf(std::uint32_t window)
{
    QProcess question;
    question.setProcessEnvironment(m_session.environment());
    // Not xdotool, whose answer is wrong for a window in a frame.
    question.start("xwininfo", {"-id", QString::number(window)});
    question.waitForFinished();
    const QByteArray answer = question.readAllStandardOutput();
    const auto value = [&answer](const QByteArray& name) {
        const qsizetype begin = answer.indexOf(" " + name + ":") + name.size() + 2;
        return answer.mid(begin, answer.indexOf('\n', begin) - begin).trimmed().toInt();
    };
    return {value("Absolute upper-left X"), value("Absolute upper-left Y"), value("Width"),
            value("Height")};
}

void ApplicationFixture::click(const QPoint& point, int button, int times)
{
    m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y()), "click",
                       "--repeat", QString::number(times), "--delay", "30",
                       QString::number(button)});
}

void ApplicationFixture::waitUntilInFront(std::uint32_t window)
{
    m_session.waitUntil("a window to come to the front",
                        [&] { return m_session.isInFront(window); });
}

std::uint32_t ApplicationFixture::startApp(const QStringList& options)
{
    m_session.start(PITHWISE_DESKTOP_APP, QStringList{"--title", "Foreign"} + options);
    const std::uint32_t window = m_session.waitForWindow({"--name", "^Foreign$"});
    waitUntilInFront(window);
    return window;
}

QProcess& ApplicationFixture::startPanel(const QString& program, const QStringList& arguments)
{
    QProcess& panel = m_session.start(program, arguments);
    EXPECT_EQ(nextLine(panel), "ready");
    return panel;
}

QByteArray ApplicationFixture::nextLine(QProcess& process)
{
    m_session.waitUntil("a line of a program", [&] {
        process.waitForReadyRead(10);
        return process.canReadLine();
    });
    return process.readLine().trimmed();
}

void ApplicationFixture::waitForEndDuringWork(QProcess& process)
{
    constexpr int limit = 15'000; // milliseconds
    EXPECT_TRUE(process.waitForFinished(limit));
}

std::string ApplicationFixture::complaints(QProcess& process)
{
    std::string result;
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
        if (!line.isEmpty() && !line.startsWith("QSpiApplication::keyEventError"))
            result += line.toStdString() + '\n';
    }
    return result;
}

QImage ApplicationFixture::screen()
{
    QImage image = ScreenPicture::of(Screenshot::create()->takeScreen());
    EXPECT_FALSE(image.isNull());
    return image;
}
