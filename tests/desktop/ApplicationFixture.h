#pragma once

#include "BenchModel.h"
#include "DesktopSession.h"
#include "ForeignClipboard.h"

#include <QCoreApplication>
#include <QImage>
#include <QPoint>
#include <QRect>

#include <gmock/gmock.h>

#include <cstdint>
#include <string>

/// A desktop with the tray application on it. Of a test that fails it prints what the application
/// had to say and leaves a picture of the screen.
class ApplicationFixture : public testing::Test
{
public:
    ~ApplicationFixture() override;

protected:
    ApplicationFixture();
    explicit ApplicationFixture(const DesktopSession::Options& options);

    void TearDown() override;

    /// A model that spells a script.
    QString standin(const std::string& script = "- The takeaway.");

    /// A model that takes some milliseconds a token and never ends an answer, so that there is time
    /// for something else.
    QString slowModel(const BenchModel::Shape& shape = {1, 256, 256, 4, 2});

    /// Starts the application and returns when it is set up.
    QProcess& launch(const QStringList& variables = {}) { return launchOn(standin(), variables); }

    QProcess& launchOn(const QString& model, const QStringList& variables = {});

    /// The arguments with which `dbus-send` asks the application something.
    static QStringList introspection();

    /// Whether the application has come to answer, which it does once it is set up.
    bool isAnswering();

    /// Runs another process of the program to its end.
    int run(const QStringList& arguments);

    /// 0 where it is not shown.
    std::uint32_t popover();

    bool isShown() { return popover() != 0; }

    void waitUntilShown();
    void waitUntilHidden();

    /// What the window's place on the screen is, in pixels.
    QRect areaOf(std::uint32_t window);

    void click(const QPoint& point, int button = 1, int times = 1);

    void waitUntilInFront(std::uint32_t window);

    /// Starts a foreign application and returns its window when it is in front.
    std::uint32_t startApp(const QStringList& options);

    /// Starts a panel program and returns once it takes icons.
    QProcess& startPanel(const QString& program, const QStringList& arguments = {});

    QByteArray nextLine(QProcess& process);

    QImage screen();

    /// Waits for the end of the application, which has work left for a minute or more. It ends
    /// within a second where nothing else has to be done; of a busy machine it can only be told
    /// that it does not wait for the work.
    static void waitForEndDuringWork(QProcess& process);

    /// What the application has said on its standard error, but for what Qt says of a registry of
    /// accessibility that has not acknowledged a key in time, as on a busy machine.
    static std::string complaints(QProcess& process);

    // Some ten milliseconds between two tokens of an answer, and minutes before it where the text
    // is of so many digits, each of them a token.
    static constexpr BenchModel::Shape slow = {8, 512, 1024, 8, 2};
    static QString longText() { return QString(60'000, '7'); }

    DesktopSession m_session;
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
    ForeignClipboard m_clipboard{m_session};
    QProcess* m_process = nullptr; // the application that was launched last
    std::string m_error;
};
