#include "SoakedApplication.h"

#include "Program.h"
#include "StandinModel.h"

#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <stdexcept>

using std::chrono::milliseconds;

SoakedApplication::SoakedApplication(DesktopSession& session, ScreenReader& reader)
    : m_session(session),
      m_reader(reader),
      m_temporaryFolder(session.path("temporary")),
      m_model(session.path("standin.gguf"))
{
    QDir().mkpath(m_temporaryFolder);
    StandinModel::write({StandinModel::split("\n- The **takeaway** of the text.\n")},
                        m_model.toStdString());
}

void SoakedApplication::start()
{
    m_process = &m_session.start("env", {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
                                         "TMPDIR=" + m_temporaryFolder, Program::path(), "--model",
                                         m_model});
    m_session.waitUntil("the application", [this] {
        try {
            requireAnswer();
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    });
    m_reader.follow(m_process->processId());
}

void SoakedApplication::requireAnswer()
{
    m_session.run("dbus-send", {"--session", "--print-reply", "--reply-timeout=10000",
                                "--dest=local.pithwise.Pithwise", "/local/pithwise/Pithwise",
                                "org.freedesktop.DBus.Introspectable.Introspect"});
}

bool SoakedApplication::hasEnded()
{
    return m_process->waitForFinished(0) || m_process->state() == QProcess::NotRunning;
}

void SoakedApplication::end(int signal)
{
    QElapsedTimer timer;
    timer.start();
    const bool isAsked = !hasEnded();
    if (isAsked)
        ::kill(static_cast<pid_t>(m_process->processId()), signal);
    m_session.waitForEnd(*m_process);
    if (isAsked && signal == SIGTERM)
        m_longestEnd = std::max(m_longestEnd, milliseconds(timer.elapsed()));
    requireGoodEnd(isAsked ? signal : 0);
    requireNoFiles();
    ++m_ends;
}

void SoakedApplication::requireGoodEnd(int signal)
{
    const bool isGood = m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() == 0
                                                                        : signal == SIGKILL;
    if (!isGood)
        throw std::runtime_error("The application failed at its end: " +
                                 m_process->readAllStandardError().toStdString());
}

void SoakedApplication::requireNoFiles()
{
    m_session.waitUntil("the temporary files to go",
                        [this] { return Footprint::filesIn(m_temporaryFolder).isEmpty(); });
}

Footprint SoakedApplication::footprint() const
{
    return Footprint::of(m_process->processId(), m_temporaryFolder);
}
