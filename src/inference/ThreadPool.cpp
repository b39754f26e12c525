#include "ThreadPool.h"

#include <ggml-backend.h>

namespace {

/// The function `name` of the processor's back end, or null. The back end may be a library that is
/// loaded only at run time.
template <typename Function>
Function backendFunction(const char* name)
{
    ggml_backend_dev_t processor = ggml_backend_dev_by_type(GGML_BACKEND_DEVICE_TYPE_CPU);
    if (processor == nullptr)
        return nullptr;
    ggml_backend_reg_t backend = ggml_backend_dev_backend_reg(processor);
    return reinterpret_cast<Function>(ggml_backend_reg_get_proc_address(backend, name));
}

} // namespace

ThreadPool::ThreadPool(int threads) : m_threads(threads)
{
    using Create = ggml_threadpool* (*)(ggml_threadpool_params*);
    ggml_threadpool_params parameters = ggml_threadpool_params_default(threads);
    if (const auto create = backendFunction<Create>("ggml_threadpool_new"); create != nullptr)
        m_pool = create(&parameters);
}

ThreadPool::~ThreadPool()
{
    using Destroy = void (*)(ggml_threadpool*);
    if (m_pool != nullptr)
        backendFunction<Destroy>("ggml_threadpool_free")(m_pool);
}

void ThreadPool::attachTo(llama_context& context)
{
    llama_set_n_threads(&context, m_threads, m_threads);
    if (m_pool != nullptr)
        llama_attach_threadpool(&context, m_pool, nullptr);
}
