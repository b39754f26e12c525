#pragma once

#include "BenchModel.h"
#include "DesktopSession.h"
#include "ForeignClipboard.h"
#include "Program.h"
#include "Screenshot.h"
#include "StandinModel.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QRect>

#include <gmock/gmock.h>
#include <signal.h>

#include <filesystem>
#include <iostream>
#include <string>

/// A desktop with the tray application on it. Of a test that fails it prints what the application
/// had to say and leaves a picture of the screen.
class ApplicationFixture : public testing::Test
{
protected:
    ApplicationFixture() : ApplicationFixture(DesktopSession::Options{}) {}
    explicit ApplicationFixture(const DesktopSession::Options& options) : m_session(options) {}

    void TearDown() override
    {
        if (!HasFailure())
            return;
        if (m_process != nullptr)
            std::cerr << m_process->readAllStandardError().toStdString();
        const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
        const QString name = QString("%1.%2.png").arg(test.test_suite_name(), test.name());
        QDir().mkpath(PITHWISE_FAILURES);
        const std::filesystem::path file = QDir(PITHWISE_FAILURES).filePath(name).toStdString();
        std::filesystem::remove(file);
        if (Screenshot::create()->takeScreen(file))
            std::cerr << "The screen is in " << file.string() << ".\n";
    }

    /// A model that spells a script.
    QString standin(const std::string& script = "- The takeaway.")
    {
        QString file = m_session.path("standin.gguf");
        StandinModel::write({StandinModel::split("\n" + script + "\n")}, file.toStdString());
        return file;
    }

    /// A model that takes some milliseconds a token and never ends an answer, so that there is time
    /// for something else.
    QString slowModel(const BenchModel::Shape& shape = {1, 256, 256, 4, 2})
    {
        QString file = m_session.path("slow.gguf");
        BenchModel::write(file.toStdString(), shape);
        return file;
    }

    /// Starts the application and returns when it is set up.
    QProcess& launch(const QStringList& variables = {}) { return launchOn(standin(), variables); }

    QProcess& launchOn(const QString& model, const QStringList& variables = {})
    {
        QStringList arguments = variables + QStringList(Program::path());
        if (!model.isEmpty())
            arguments += {"--model", model};
        m_process = &m_session.start("env", arguments);
        m_session.waitUntil("the application", [this] { return isAnswering(); });
        return *m_process;
    }

    /// Whether the application has come to answer, which it does once it is set up.
    bool isAnswering()
    {
        QProcess question;
        question.setProcessEnvironment(m_session.environment());
        question.start("dbus-send", {"--session", "--print-reply", "--dest=local.pithwise.Pithwise",
                                     "/local/pithwise/Pithwise",
                                     "org.freedesktop.DBus.Introspectable.Introspect"});
        question.waitForFinished();
        return question.exitCode() == 0;
    }

    /// Runs another process of the program to its end.
    int run(const QStringList& arguments)
    {
        Program program;
        program.start(arguments);
        const int status = program.finish();
        m_error = program.error().toStdString();
        return status;
    }

    /// 0 where it is not shown.
    std::uint32_t popover()
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

    bool isShown() { return popover() != 0; }

    void waitUntilShown()
    {
        m_session.waitUntil("the popover to be shown", [this] { return isShown(); });
    }
    void waitUntilHidden()
    {
        m_session.waitUntil("the popover to be hidden", [this] { return !isShown(); });
    }

    /// What the window's place on the screen is, in pixels.
    QRect areaOf(std::uint32_t window)
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

    void click(const QPoint& point, int button = 1, int times = 1)
    {
        m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y()),
                           "click", "--repeat", QString::number(times), "--delay", "30",
                           QString::number(button)});
    }

    void waitUntilInFront(std::uint32_t window)
    {
        m_session.waitUntil("a window to come to the front",
                            [&] { return m_session.isInFront(window); });
    }

    /// Starts a foreign application and returns its window when it is in front.
    std::uint32_t startApp(const QStringList& options)
    {
        m_session.start(PITHWISE_DESKTOP_APP, QStringList{"--title", "Foreign"} + options);
        const std::uint32_t window = m_session.waitForWindow({"--name", "^Foreign$"});
        waitUntilInFront(window);
        return window;
    }

    /// Starts a panel program and returns once it takes icons.
    QProcess& startPanel(const QString& program, const QStringList& arguments = {})
    {
        QProcess& panel = m_session.start(program, arguments);
        EXPECT_EQ(nextLine(panel), "ready");
        return panel;
    }

    QByteArray nextLine(QProcess& process)
    {
        m_session.waitUntil("a line of a program", [&] {
            process.waitForReadyRead(10);
            return process.canReadLine();
        });
        return process.readLine().trimmed();
    }

    QImage screen()
    {
        const std::filesystem::path file = m_session.path("screen.png").toStdString();
        std::filesystem::remove(file);
        EXPECT_TRUE(Screenshot::create()->takeScreen(file));
        return QImage(QString::fromStdString(file.string()));
    }

    DesktopSession m_session;
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
    ForeignClipboard m_clipboard{m_session};
    QProcess* m_process = nullptr; // the application that was launched last
    std::string m_error;
};
