#include "ScriptedEngine.h"

#include <stdexcept>

ScriptedEngine::~ScriptedEngine()
{
    release();
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_inside == 0; });
}

Pithwise::Generate ScriptedEngine::generate()
{
    return [this](const std::filesystem::path&, std::string_view, std::string_view user,
                  int maxTokens, const CancelToken&, const Pithwise::TextCallback& onUpdate) {
        return run({std::string(user), maxTokens, std::this_thread::get_id()}, onUpdate);
    };
}

void ScriptedEngine::release()
{
    const std::lock_guard lock(m_mutex);
    m_isReleased = true;
    m_changed.notify_all();
}

std::vector<ScriptedEngine::Call> ScriptedEngine::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

int ScriptedEngine::updates() const
{
    const std::lock_guard lock(m_mutex);
    return m_updates;
}

void ScriptedEngine::add(std::size_t number, Step step)
{
    const std::lock_guard lock(m_mutex);
    m_steps[number].push_back(std::move(step));
    m_changed.notify_all();
}

std::string ScriptedEngine::run(Call call, const Pithwise::TextCallback& onUpdate)
{
    m_threads.countThisOne();
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
