#pragma once

#include <llama.h>

/// The threads that compute, kept from one evaluation to the next: without them llama.cpp starts
/// new ones for every token. They sleep between evaluations.
class ThreadPool
{
public:
    /// Starts `threads` threads, the calling one counted in; none if the processor's back end
    /// offers no pools, and llama.cpp then starts as many for each evaluation.
    explicit ThreadPool(int threads);
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Has `context` compute with these threads, with all of them. Requires: the context is
    /// destroyed first.
    void attachTo(llama_context& context);

private:
    const int m_threads;
    ggml_threadpool* m_pool = nullptr;
};
