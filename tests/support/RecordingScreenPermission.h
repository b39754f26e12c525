#pragma once

#include "ScreenPermission.h"

#include <string>
#include <vector>

/// Stands in for the user's permission and records what is asked of it.
class RecordingScreenPermission : public ScreenPermission
{
public:
    explicit RecordingScreenPermission(bool isGranted = true) : m_isGranted(isGranted) {}

    bool isGranted() override
    {
        m_calls.emplace_back("isGranted");
        return m_isGranted;
    }

    bool request() override
    {
        m_calls.emplace_back("request");
        return m_isGranted;
    }

    const std::vector<std::string>& calls() const { return m_calls; }

private:
    bool m_isGranted;
    std::vector<std::string> m_calls;
};
