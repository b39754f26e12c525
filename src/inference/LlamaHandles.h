#pragma once

#include <llama.h>

#include <memory>

/// Owning handles for llama.cpp's objects. A context must be destroyed before its model.
namespace LlamaHandles {

struct Free
{
    void operator()(llama_model* model) const { llama_model_free(model); }
    void operator()(llama_context* context) const { llama_free(context); }
    void operator()(llama_sampler* sampler) const { llama_sampler_free(sampler); }
};

using Model = std::unique_ptr<llama_model, Free>;
using Context = std::unique_ptr<llama_context, Free>;
using Sampler = std::unique_ptr<llama_sampler, Free>;

} // namespace LlamaHandles
