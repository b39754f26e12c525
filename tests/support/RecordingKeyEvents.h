#pragma once

#include "KeyEvents.h"

#include <functional>
#include <string>
#include <vector>

/// Sends nothing, and writes down what it was asked to send. One thread at a time.
class RecordingKeyEvents : public KeyEvents
{
public:
    /// Calls are appended to `calls`, which outlives this.
    explicit RecordingKeyEvents(std::vector<std::string>& calls) : m_calls(calls) {}

    Outcome outcome = Outcome::sent;
    /// What the application in front does upon the shortcut.
    std::function<void()> application = [] {};

    Outcome sendCopy() override
    {
        m_calls.emplace_back("sendCopy");
        if (outcome == Outcome::sent)
            application();
        return outcome;
    }

private:
    std::vector<std::string>& m_calls;
};
