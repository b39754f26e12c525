#include "ZipWriter.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <stdexcept>

static la_ssize_t append(archive* /*writer*/, void* bytes, const void* block, std::size_t length)
{
    static_cast<std::string*>(bytes)->append(static_cast<const char*>(block), length);
    return static_cast<la_ssize_t>(length);
}

static void check(archive* writer, la_ssize_t status)
{
    if (status < 0)
        throw std::runtime_error(archive_error_string(writer));
}

static const char* options(ZipWriter::Method method)
{
    switch (method) {
    case ZipWriter::Method::deflate:
        return "zip:compression=deflate";
    case ZipWriter::Method::store:
        return "zip:compression=store";
    case ZipWriter::Method::encrypt:
        return "zip:encryption=traditional";
    }
    return "";
}

ZipWriter::ZipWriter(Method method) : m_archive(archive_write_new())
{
    archive_write_set_format_zip(m_archive);
    check(m_archive, archive_write_set_options(m_archive, options(method)));
    if (method == Method::encrypt)
        check(m_archive, archive_write_set_passphrase(m_archive, "secret"));
    archive_write_set_bytes_in_last_block(m_archive, 1); // no padding behind the end
    check(m_archive, archive_write_open(m_archive, &m_bytes, nullptr, append, nullptr));
}

ZipWriter::~ZipWriter()
{
    archive_write_free(m_archive);
}

void ZipWriter::begin(const std::string& name, std::uint64_t size)
{
    archive_entry* entry = archive_entry_new();
    archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_perm(entry, 0644);
    archive_entry_set_size(entry, static_cast<la_int64_t>(size));
    const int status = archive_write_header(m_archive, entry);
    archive_entry_free(entry);
    check(m_archive, status);
}

void ZipWriter::add(const std::string& name, std::string_view content)
{
    begin(name, content.size());
    check(m_archive, archive_write_data(m_archive, content.data(), content.size()));
}

void ZipWriter::addZeros(const std::string& name, std::uint64_t count)
{
    begin(name, count);
    const std::string block(std::size_t{1} << 20, '\0');
    while (count > 0) {
        const std::size_t length = std::min<std::uint64_t>(count, block.size());
        check(m_archive, archive_write_data(m_archive, block.data(), length));
        count -= length;
    }
}

std::string ZipWriter::bytes()
{
    check(m_archive, archive_write_close(m_archive));
    return m_bytes;
}

std::string ZipWriter::document(std::string_view xml, Method method)
{
    ZipWriter writer(method);
    writer.add("word/document.xml", xml);
    return writer.bytes();
}

static void put(std::string& zip, std::size_t offset, std::uint32_t size)
{
    for (std::size_t i = 0; i < sizeof size; ++i)
        zip.at(offset + i) = static_cast<char>(size >> (8 * i));
}

std::string ZipWriter::withToldSize(std::string zip, std::uint32_t size)
{
    constexpr std::string_view entrySignature = "PK\x01\x02";
    put(zip, 22, size);
    put(zip, zip.rfind(entrySignature) + 24, size);
    return zip;
}
