#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct archive;

/// Writes ZIP archives with libarchive, as word processors and their enemies do.
class ZipWriter
{
public:
    enum class Method { deflate, store, encrypt };

    explicit ZipWriter(Method method = Method::deflate);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    void add(const std::string& name, std::string_view content);

    /// A member of as many zero bytes.
    void addZeros(const std::string& name, std::uint64_t count);

    /// The archive, to which nothing is added any more.
    std::string bytes();

    /// An archive with nothing but the main part of a word processor's document.
    static std::string document(std::string_view xml, Method method = Method::deflate);

    /// `zip` with another size told for its only member.
    static std::string withToldSize(std::string zip, std::uint32_t size);

private:
    void begin(const std::string& name, std::uint64_t size);

    archive* m_archive;
    std::string m_bytes;
};
