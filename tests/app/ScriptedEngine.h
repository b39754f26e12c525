#pragma once

#include "Pithwise.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

/// Stands in for the model: each call does, on its own thread, what the test tells it to, and takes
/// no notice of cancelling.
class ScriptedEngine
{
public:
    struct Call
    {
        std::string user;
        int maxTokens;
        std::thread::id thread;
    };

    ~ScriptedEngine()
    {
        release();
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_inside == 0; });
    }

    Pithwise::Generate generate()
    {
        return [this](const std::filesystem::path&, std::string_view, std::string_view user,
                      int maxTokens, const CancelToken&, const Pithwise::TextCallback& onUpdate) {
            return run({std::string(user), maxTokens, std::this_thread::get_id()}, onUpdate);
        };
    }

    /// What the call of that number, present or future, does next.
    void update(std::size_t number, const std::string& text) { add(number, {Kind::update, text}); }
    void finish(std::size_t number, const std::string& text) { add(number, {Kind::finish, text}); }
    void fail(std::size_t number, const std::string& text) { add(number, {Kind::fail, text}); }

    /// Lets all calls fail.
    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_isReleased = true;
        m_changed.notify_all();
    }

    std::vector<Call> calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    /// How many updates have been told, of all calls.
    int updates() const
    {
        const std::lock_guard lock(m_mutex);
        return m_updates;
    }

private:
    /// Counts a call while it lives, under the mutex.
    struct Inside
    {
        explicit Inside(ScriptedEngine& engine) : owner(engine) { ++owner.m_inside; }
        ~Inside()
        {
            --owner.m_inside;
            owner.m_changed.notify_all();
        }
        ScriptedEngine& owner;
    };

    enum class Kind { update, finish, fail };
    struct Step
    {
        Kind kind;
        std::string text;
    };

    void add(std::size_t number, Step step)
    {
        const std::lock_guard lock(m_mutex);
        m_steps[number].push_back(std::move(step));
        m_changed.notify_all();
    }

    std::string run(Call call, const Pithwise::TextCallback& onUpdate)
    {
        std::unique_lock lock(m_mutex);
        const Inside inside(*this);
        const std::size_t number = m_calls.size();
        m_calls.push_back(std::move(call));
        for (;;) {
            m_changed.wait(lock, [&] { return m_isReleased || !m_steps[number].empty(); });
            if (m_isReleased)
                throw std::runtime_error("The test is over.");
            const Step step = m_steps[number].front();
            m_steps[number].pop_front();
            if (step.kind == Kind::finish)
                return step.text;
            if (step.kind == Kind::fail)
                throw std::runtime_error(step.text);
            lock.unlock();
            onUpdate(step.text);
            lock.lock();
            ++m_updates;
        }
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Call> m_calls;
    std::map<std::size_t, std::deque<Step>> m_steps;
    int m_updates = 0;
    int m_inside = 0; // calls that have not ended
    bool m_isReleased = false;
};
