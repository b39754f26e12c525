#pragma once

#include <gguf.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// Writes a GGUF file whose tensors are made row by row while they go to the disk: a gigabyte of
/// them never has to be in memory.
class GgufWriter
{
public:
    struct FreeMetadata
    {
        void operator()(gguf_context* metadata) const { gguf_free(metadata); }
    };
    using Metadata = std::unique_ptr<gguf_context, FreeMetadata>;

    /// Fills row number `index` of a tensor; `row` comes zeroed.
    using FillRow = std::function<void(std::int64_t index, std::span<std::byte> row)>;

    GgufWriter();

    /// The keys and values of the file, for ggml's gguf_set_... functions.
    gguf_context* metadata() const { return m_metadata.get(); }

    /// Adds a tensor with a name of its own. `columns` is a multiple of the block size of `type`;
    /// a vector has one row. `fillRow` is called by `write`; without it the tensor is zero.
    void addTensor(const std::string& name, ggml_type type, std::int64_t columns, std::int64_t rows,
                   FillRow fillRow = {});

    /// Adds a vector of F32 numbers that are all `value`.
    void addConstant(const std::string& name, std::int64_t columns, float value);

    /// Writes the file, replacing what was there, and makes it at least `paddedTo` bytes long with
    /// a hole at its end. Throws std::runtime_error with a sentence when that fails; an incomplete
    /// file then stays.
    void write(const std::filesystem::path& path, std::uintmax_t paddedTo = 0) const;

private:
    struct Tensor
    {
        std::int64_t rows;
        std::size_t rowBytes;
        FillRow fillRow;
    };

    bool writeData(std::FILE* file) const;

    Metadata m_metadata;
    std::vector<Tensor> m_tensors;
};
