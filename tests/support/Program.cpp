#include "Program.h"

#include <QDeadlineTimer>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

QString Program::path()
{
    return qEnvironmentVariable("PITHWISE_PROGRAM", QStringLiteral(PITHWISE_BUILT_PROGRAM));
}

Program::Program(Output output)
{
    m_process.setProgram(path());
    m_process.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    // A test run in the background may have inherited that interrupts are ignored.
    m_process.setChildProcessModifier([] { ::signal(SIGINT, SIG_DFL); });
    if (output == Output::pipe)
        return;
    m_terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (m_terminal < 0 || ::grantpt(m_terminal) != 0 || ::unlockpt(m_terminal) != 0)
        throw std::runtime_error("There is no terminal to be had.");
    std::array<char, 128> name{};
    ::ptsname_r(m_terminal, name.data(), name.size());
    m_process.setStandardOutputFile(QString::fromLocal8Bit(name.data()));
}

Program::~Program()
{
    m_process.kill();
    m_process.waitForFinished();
    if (m_terminal >= 0)
        ::close(m_terminal);
}

void Program::setEnvironment(const QString& name, const QString& value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

void Program::start(const QStringList& arguments, const QByteArray& input)
{
    m_process.setArguments(arguments);
    m_process.start();
    m_process.waitForStarted();
    m_process.write(input);
    m_process.closeWriteChannel();
}

void Program::read()
{
    m_error += m_process.readAllStandardError();
    m_output += m_process.readAllStandardOutput();
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while (m_terminal >= 0 && (count = ::read(m_terminal, buffer.data(), buffer.size())) > 0)
        m_output.append(buffer.data(), count);
}

template <typename Condition>
bool Program::waitFor(Condition condition)
{
    const QDeadlineTimer deadline(60'000);
    for (;;) {
        // Before reading, so that what came with the end is read still.
        const bool ended = m_process.state() == QProcess::NotRunning;
        read();
        if (condition())
            return true;
        if (ended || deadline.hasExpired())
            return false;
        m_process.waitForReadyRead(5);
    }
}

bool Program::waitForError(const QByteArray& text)
{
    return waitFor([&] { return m_error.contains(text); });
}

bool Program::waitForOutput()
{
    return waitFor([&] { return !m_output.isEmpty(); });
}

void Program::interrupt()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGINT);
}

int Program::finish()
{
    waitFor([&] { return m_process.state() == QProcess::NotRunning; });
    m_process.waitForFinished();
    read();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
