#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// A regular file, open for reading. Pipes, devices and folders are refused without waiting for
/// them, even if one takes the file's place at the last moment. Any thread.
class RegularFile
{
public:
    /// The most bytes that a document may have. The limit makes reading fail before memory runs
    /// out.
    static constexpr std::uint64_t mostBytes = std::uint64_t{1} << 30;

    /// Opens the file. Nothing if `path` is not a regular file or may not be read.
    static std::optional<RegularFile> open(const std::filesystem::path& path);

    int descriptor() const { return m_descriptor.value(); }

    /// How many bytes the file had when it was opened.
    std::uint64_t size() const { return m_size; }

    /// The whole content. Nothing if it cannot be read or has more than `mostBytes`. Blocks.
    std::optional<std::string> bytes() const;

private:
    RegularFile(FileDescriptor descriptor, std::uint64_t size);

    FileDescriptor m_descriptor;
    std::uint64_t m_size;
};
