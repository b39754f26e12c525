#include "GgufWriter.h"

#include <ggml.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

struct FreeContext
{
    void operator()(ggml_context* context) const { ggml_free(context); }
};

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Makes the file, of which everything is written, at least `bytes` long.
bool pad(std::FILE* file, std::uintmax_t bytes)
{
    const long written = std::ftell(file);
    if (bytes <= static_cast<std::uintmax_t>(written))
        return true;
    return std::fseek(file, static_cast<long>(bytes - 1), SEEK_SET) == 0 &&
           std::fputc(0, file) == 0;
}

[[noreturn]] void throwCannotWrite(const std::filesystem::path& path, int error)
{
    throw std::runtime_error("The file " + path.string() +
                             " cannot be written: " + std::generic_category().message(error) + ".");
}

} // namespace

GgufWriter::GgufWriter() : m_metadata(gguf_init_empty()) {}

void GgufWriter::addTensor(const std::string& name, ggml_type type, std::int64_t columns,
                           std::int64_t rows, FillRow fillRow)
{
    // gguf_add_tensor copies the description, so the context need not outlive the call.
    const std::unique_ptr<ggml_context, FreeContext> context(
        ggml_init({ggml_tensor_overhead(), nullptr, true}));
    if (!context)
        throw std::bad_alloc();
    ggml_tensor* tensor = ggml_new_tensor_2d(context.get(), type, columns, rows);
    ggml_set_name(tensor, name.c_str());
    gguf_add_tensor(m_metadata.get(), tensor);
    m_tensors.push_back({rows, ggml_row_size(type, columns), std::move(fillRow)});
}

void GgufWriter::addConstant(const std::string& name, std::int64_t columns, float value)
{
    addTensor(name, GGML_TYPE_F32, columns, 1, [value](std::int64_t, std::span<std::byte> row) {
        for (std::size_t at = 0; at < row.size(); at += sizeof value)
            std::memcpy(&row[at], &value, sizeof value);
    });
}

void GgufWriter::write(const std::filesystem::path& path, std::uintmax_t paddedTo) const
{
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wb"));
    if (!file)
        throwCannotWrite(path, errno);
    if (!gguf_write_to_file_ptr(m_metadata.get(), file.get(), true) || !writeData(file.get()) ||
        !pad(file.get(), paddedTo))
        throwCannotWrite(path, errno);
    if (std::fclose(file.release()) != 0)
        throwCannotWrite(path, errno);
}

bool GgufWriter::writeData(std::FILE* file) const
{
    const std::size_t alignment = gguf_get_alignment(m_metadata.get());
    std::vector<std::byte> row;
    for (const Tensor& tensor : m_tensors) {
        for (std::int64_t index = 0; index < tensor.rows; ++index) {
            row.assign(tensor.rowBytes, std::byte{0});
            if (tensor.fillRow)
                tensor.fillRow(index, row);
            if (std::fwrite(row.data(), 1, row.size(), file) != row.size())
                return false;
        }
        const std::size_t bytes = tensor.rowBytes * static_cast<std::size_t>(tensor.rows);
        row.assign((alignment - bytes % alignment) % alignment, std::byte{0});
        if (std::fwrite(row.data(), 1, row.size(), file) != row.size())
            return false;
    }
    return true;
}
