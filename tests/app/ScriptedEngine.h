#pragma once

#include "LivingThreads.h"
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

    ~ScriptedEngine();

    Pithwise::Generate generate();

    /// What the call of that number, present or future, does next.
    void update(std::size_t number, const std::string& text) { add(number, {Kind::update, text}); }
    void finish(std::size_t number, const std::string& text) { add(number, {Kind::finish, text}); }
    void fail(std::size_t number, const std::string& text) { add(number, {Kind::fail, text}); }

    /// Lets all calls fail.
    void release();

    std::vector<Call> calls() const;

    /// How many updates have been told, of all calls.
    int updates() const;

    /// How many threads have made a call and not ended yet. One that has ended tells nothing more.
    int threads() const { return m_threads.number(); }

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

    void add(std::size_t number, Step step);

    std::string run(Call call, const Pithwise::TextCallback& onUpdate);

    const LivingThreads m_threads{};
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Call> m_calls;
    std::map<std::size_t, std::deque<Step>> m_steps;
    int m_updates = 0;
    int m_inside = 0; // calls that have not ended
    bool m_isReleased = false;
};
