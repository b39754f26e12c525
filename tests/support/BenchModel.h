#pragma once

#include "Qwen2Layout.h"

#include <filesystem>

/// Writes models with the shape, the number formats and the tokenizer of Qwen2.5-1.5B-Instruct in
/// Q4_K_M, but arbitrary weights: they cost the time and the memory of the real one.
namespace BenchModel {

using Shape = Qwen2Layout::Shape;

/// Writes the model; the default shape takes 986 MB. A generated token is always one printable
/// ASCII character and never the end of generation. Matrices whose rows are no multiple of 256
/// long are F16. Throws std::invalid_argument when the parts of `shape` do not fit together, and
/// std::runtime_error when the file cannot be written or the tokenizer, a file in llama.cpp's
/// source folder, cannot be read.
void write(const std::filesystem::path& path, const Shape& shape = {});

} // namespace BenchModel
