#pragma once

#include "DesktopSession.h"
#include "Footprint.h"
#include "ScreenReader.h"

#include <chrono>

/// The application, which can be ended in whatever state it is and started again. Throws
/// std::runtime_error where it is gone, hangs, or leaves a temporary file behind.
class SoakedApplication
{
public:
    /// Both outlive this.
    SoakedApplication(DesktopSession& session, ScreenReader& reader);

    /// Requires: it does not run.
    void start();
    /// Throws where it does not answer within ten seconds.
    void requireAnswer();
    bool hasEnded();
    /// Sends `signal`, unless it has ended, and returns once it and its temporary files are gone.
    void end(int signal);

    Footprint footprint() const;
    int ends() const { return m_ends; }
    /// Of the times from SIGTERM to the end.
    std::chrono::milliseconds longestEnd() const { return m_longestEnd; }

private:
    void requireGoodEnd(int signal);
    void requireNoFiles();

    DesktopSession& m_session;
    ScreenReader& m_reader;
    const QString m_temporaryFolder;
    const QString m_model;
    QProcess* m_process = nullptr; // the session's
    int m_ends = 0;
    std::chrono::milliseconds m_longestEnd{0};
};
