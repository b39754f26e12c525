#pragma once

#include <llama.h>

/// The threads that compute. They are kept from one evaluation to the next and sleep in between;
/// without them llama.cpp starts new ones for every token.
class ThreadPool
{
public:
    /// Starts `threads` threads, counting the calling one. If the processor's back end offers no
    /// pools it starts none, and llama.cpp starts as many for each evaluation.
    explicit ThreadPool(int threads);
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Makes `context` compute with all of these threads. Requires: the context is destroyed before
    /// this object.
    void attachTo(llama_context& context);

private:
    const int m_threads;
    ggml_threadpool* m_pool = nullptr;
};
