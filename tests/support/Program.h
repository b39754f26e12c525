#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

/// The program under test as a process of its own, in the test's environment. Calls wait for at
/// most a minute. One thread.
class Program
{
public:
    enum class Output { pipe, terminal };

    /// Where it is: what the environment's PITHWISE_PROGRAM names, an installed one for instance,
    /// else what was built here.
    static QString path();

    explicit Program(Output output = Output::pipe);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void setEnvironment(const QString& name, const QString& value);
    void setOutputFile(const QString& path) { m_process.setStandardOutputFile(path); }

    /// Starts it with `input` as the whole of its standard input.
    void start(const QStringList& arguments, const QByteArray& input = {});

    /// Whether standard error comes to hold `text`.
    bool waitForError(const QByteArray& text);
    /// Whether standard output comes to hold anything.
    bool waitForOutput();

    /// What Ctrl+C does.
    void interrupt();

    /// Waits for the end and returns the exit status; -1 where a signal ended it.
    int finish();

    const QByteArray& output() const { return m_output; }
    const QByteArray& error() const { return m_error; }

private:
    void read();
    template <typename Condition>
    bool waitFor(Condition condition);

    QProcess m_process;
    int m_terminal = -1; // the near end of the terminal
    QByteArray m_output;
    QByteArray m_error;
};
