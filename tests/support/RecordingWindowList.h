#pragma once

#include "WindowList.h"

#include <utility>
#include <vector>

/// Stands in for the system's windows and counts how often they are asked for.
class RecordingWindowList : public WindowList
{
public:
    explicit RecordingWindowList(std::vector<Window> windows = {}) : m_windows(std::move(windows))
    {}

    std::vector<Window> windows() override
    {
        ++m_requests;
        return m_windows;
    }

    int requests() const { return m_requests; }

private:
    std::vector<Window> m_windows;
    int m_requests = 0;
};
