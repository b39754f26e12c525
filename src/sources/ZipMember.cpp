#include "ZipMember.h"

#include "RegularFile.h"
#include "Release.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <array>
#include <memory>

namespace ZipMember {

namespace {

using Reader = std::unique_ptr<archive, Release<archive_read_free>>;

/// A reader of ZIP archives that goes by their table of contents. One that did not would take a
/// part of a truncated archive for the whole. A wrong checksum is ignored, so that what is there
/// can be read.
Reader makeReader()
{
    Reader reader(archive_read_new());
    if (!reader || archive_read_support_format_zip_seekable(reader.get()) != ARCHIVE_OK ||
        archive_read_set_options(reader.get(), "zip:ignorecrc32") != ARCHIVE_OK)
        return nullptr;
    return reader;
}

archive_entry* find(archive& reader, std::string_view name)
{
    archive_entry* entry = nullptr;
    // Warnings concern other facts about a member, such as a name in another encoding.
    for (int status = ARCHIVE_OK; status == ARCHIVE_OK || status == ARCHIVE_WARN;) {
        status = archive_read_next_header(&reader, &entry);
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            break;
        const char* path = archive_entry_pathname(entry);
        if (path != nullptr && path == name)
            return entry;
    }
    return nullptr;
}

/// The data of the member that find() has found. Any warning about it means that it is damaged.
std::optional<std::string> content(archive& reader, std::uint64_t size)
{
    std::string content;
    std::array<char, 65536> block{};
    for (;;) {
        const la_ssize_t count = archive_read_data(&reader, block.data(), block.size());
        if (count < 0 || static_cast<std::uint64_t>(count) > size - content.size())
            return std::nullopt;
        if (count == 0)
            break;
        content.append(block.data(), static_cast<std::size_t>(count));
    }
    return content;
}

std::optional<std::string> read(archive& reader, std::string_view name)
{
    archive_entry* const entry = find(reader, name);
    if (entry == nullptr || archive_entry_size_is_set(entry) == 0)
        return std::nullopt;
    const auto size = static_cast<std::uint64_t>(archive_entry_size(entry));
    if (size > RegularFile::mostBytes)
        return std::nullopt;
    return content(reader, size);
}

} // namespace

std::optional<std::string> read(const RegularFile& archive, std::string_view name)
{
    constexpr std::size_t blockSize = 16384; // this much is read for every member that is passed
    const Reader reader = makeReader();
    if (!reader ||
        archive_read_open_fd(reader.get(), archive.descriptor(), blockSize) != ARCHIVE_OK)
        return std::nullopt;
    return read(*reader, name);
}

std::optional<std::string> read(std::string_view archive, std::string_view name)
{
    const Reader reader = makeReader();
    if (!reader ||
        archive_read_open_memory(reader.get(), archive.data(), archive.size()) != ARCHIVE_OK)
        return std::nullopt;
    return read(*reader, name);
}

} // namespace ZipMember
