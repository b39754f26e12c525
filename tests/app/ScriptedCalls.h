#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// Stands in for a function that blocks: each call waits until the test answers it. Any thread.
template <typename Argument, typename Result>
class ScriptedCalls
{
public:
    /// The calls that wait still fail.
    ~ScriptedCalls()
    {
        release();
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_inside == 0; });
    }

    Result call(const Argument& argument)
    {
        std::unique_lock lock(m_mutex);
        const Inside inside(*this);
        const std::size_t number = m_arguments.size();
        m_arguments.push_back(argument);
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return m_isReleased || m_answers.count(number) > 0; });
        if (m_isReleased)
            throw std::runtime_error("The test is over.");
        return m_answers.at(number)();
    }

    /// Lets the call of that number, present or future, end so.
    void answer(std::size_t number, Result result)
    {
        set(number, [result] { return result; });
    }
    void fail(std::size_t number, const std::string& sentence)
    {
        set(number, [sentence]() -> Result { throw std::runtime_error(sentence); });
    }

    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_isReleased = true;
        m_changed.notify_all();
    }

    std::vector<Argument> arguments() const
    {
        const std::lock_guard lock(m_mutex);
        return m_arguments;
    }

private:
    /// Counts a call while it lives, under the mutex.
    struct Inside
    {
        explicit Inside(ScriptedCalls& calls) : owner(calls) { ++owner.m_inside; }
        ~Inside()
        {
            --owner.m_inside;
            owner.m_changed.notify_all();
        }
        ScriptedCalls& owner;
    };

    void set(std::size_t number, std::function<Result()> answer)
    {
        const std::lock_guard lock(m_mutex);
        m_answers[number] = std::move(answer);
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Argument> m_arguments;
    std::map<std::size_t, std::function<Result()>> m_answers;
    int m_inside = 0; // calls that have not ended
    bool m_isReleased = false;
};
