#pragma once

#include "DesktopSession.h"
#include "Program.h"
#include "StandinModel.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPoint>
#include <QRect>

#include <gmock/gmock.h>
#include <signal.h>

#include <string>

/// A desktop with the tray application on it.
class ApplicationFixture : public testing::Test
{
protected:
    ApplicationFixture() : ApplicationFixture(DesktopSession::Options{}) {}
    explicit ApplicationFixture(const DesktopSession::Options& options) : m_session(options) {}

    /// A model that spells a script.
    QString standin()
    {
        QString file = m_session.path("standin.gguf");
        StandinModel::write({StandinModel::split("\n- The takeaway.\n")}, file.toStdString());
        return file;
    }

    /// Starts the application and returns when it is set up.
    QProcess& launch(const QStringList& variables = {}) { return launchOn(standin(), variables); }

    QProcess& launchOn(const QString& model, const QStringList& variables = {})
    {
        QStringList arguments = variables + QStringList(PITHWISE_PROGRAM);
        if (!model.isEmpty())
            arguments += {"--model", model};
        QProcess& process = m_session.start("env", arguments);
        m_session.waitUntil("the application", [this] { return isAnswering(); });
        return process;
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
        Program program(PITHWISE_PROGRAM);
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
        question.start("xdotool", {"getwindowgeometry", "--shell", QString::number(window)});
        question.waitForFinished();
        const QByteArray answer = question.readAllStandardOutput();
        const auto value = [&answer](const QByteArray& name) {
            const qsizetype begin = answer.indexOf("\n" + name + "=") + name.size() + 2;
            return answer.mid(begin, answer.indexOf('\n', begin) - begin).toInt();
        };
        return {value("X"), value("Y"), value("WIDTH"), value("HEIGHT")};
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

    DesktopSession m_session;
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
    std::string m_error;
};
