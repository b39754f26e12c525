#pragma once

#include <exception>
#include <new>
#include <string>
#include <utility>

/// The one error meant for users: `message` is a finished English sentence, shown as it stands.
/// Errors of the system (files, network) pass through as other std::exceptions.
class AppError : public std::exception
{
public:
    explicit AppError(std::string message) : m_message(std::move(message)) {}

    const std::string& message() const { return m_message; }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

/// What users are told of any error: an AppError's message, or the words of the system or a
/// library, in whatever encoding those are.
inline std::string sentenceOf(const std::exception& error)
{
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return "There is not enough memory.";
    return error.what();
}
