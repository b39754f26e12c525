#pragma once

#include "Release.h"

#include <llama.h>

#include <memory>

/// Owning handles for llama.cpp's objects. A context must be destroyed before its model.
namespace LlamaHandles {

using Model = std::unique_ptr<llama_model, Release<llama_model_free>>;
using Context = std::unique_ptr<llama_context, Release<llama_free>>;
using Sampler = std::unique_ptr<llama_sampler, Release<llama_sampler_free>>;

} // namespace LlamaHandles
