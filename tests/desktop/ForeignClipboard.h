#pragma once

#include "DesktopSession.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>

#include <stdexcept>

/// The clipboard and the primary selection in the hands of another program. One thread, which
/// answers other programs while it waits.
class ForeignClipboard
{
public:
    explicit ForeignClipboard(DesktopSession& session) : m_session(session) {}

    /// Empty where there is nothing.
    QByteArray read(const QString& selection, const QString& target)
    {
        QProcess reader;
        reader.setProcessEnvironment(m_session.environment());
        reader.start("xclip", {"-o", "-selection", selection, "-t", target}, QIODevice::ReadOnly);
        return hasSucceeded(reader) ? reader.readAllStandardOutput() : QByteArray();
    }

    /// What the clipboard holds as text.
    QByteArray text() { return read("clipboard", "UTF8_STRING"); }

    /// Puts `text` on the clipboard and returns when it is there.
    void put(const QByteArray& text)
    {
        QFile file(m_session.path("clipboard"));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("The text for the clipboard cannot be written.");
        file.close();
        QProcess& owner =
            m_session.start("xclip", {"-quiet", "-selection", "clipboard", "-i", file.fileName()});
        owner.setReadChannel(QProcess::StandardError);
        m_session.waitUntil("the clipboard to have an owner",
                            [&] { return this->text() == text && hasAnswered(owner); });
    }

private:
    /// Whether it was `owner` who had the text: another program may have the same.
    static bool hasAnswered(QProcess& owner)
    {
        owner.waitForReadyRead(1);
        return owner.peek(owner.bytesAvailable()).contains("request number 2");
    }

    static bool hasSucceeded(QProcess& process)
    {
        const QDeadlineTimer deadline(60'000);
        while (!process.waitForFinished(5) && process.state() != QProcess::NotRunning &&
               !deadline.hasExpired())
            QCoreApplication::processEvents();
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    DesktopSession& m_session;
};
