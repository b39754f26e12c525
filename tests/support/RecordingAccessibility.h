#pragma once

#include "Accessibility.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

/// Tells what it is given, and writes down what it is asked. One thread at a time.
class RecordingAccessibility : public Accessibility
{
public:
    /// Calls are appended to `calls`, which outlives this.
    explicit RecordingAccessibility(std::vector<std::string>& calls) : m_calls(calls) {}

    bool trusted = true;
    std::optional<std::string> selection;
    /// Called with the limit of a question, for the time that it takes.
    std::function<void(std::chrono::milliseconds)> wait = [](std::chrono::milliseconds) {};

    bool isTrusted() override
    {
        m_calls.emplace_back("isTrusted");
        return trusted;
    }

    std::optional<std::string> selectedText(std::chrono::milliseconds limit) override
    {
        wait(limit);
        m_calls.emplace_back("selectedText");
        return selection;
    }

private:
    std::vector<std::string>& m_calls;
};
