#pragma once

#include <unistd.h>

#include <utility>

/// Owns a file descriptor of the operating system, or none (-1).
class FileDescriptor
{
public:
    explicit FileDescriptor(int value = -1) : m_value(value) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_value(std::exchange(other.m_value, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_value >= 0)
            ::close(m_value);
    }

    int value() const { return m_value; }

    /// Hands the descriptor over. The caller must close it, and can see whether that fails.
    int release() { return std::exchange(m_value, -1); }

private:
    int m_value;
};
