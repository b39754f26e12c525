#define ZLIB_CONST
#include "PageBody.h"

#include "AppError.h"

#include <zlib.h>

#include <array>
#include <new>
#include <stdexcept>
#include <utility>

static constexpr std::size_t pieceSize = 256 << 10;
static constexpr int anyHeader = 15 + 32; // the largest window; accepts a gzip or zlib header

void PageBody::EndInflate::operator()(z_stream_s* stream) const
{
    ::inflateEnd(stream);
    delete stream;
}

PageBody::PageBody(std::string_view encoding, std::size_t mostBytes) : m_mostBytes(mostBytes)
{
    if (encoding.empty() || encoding == "identity")
        return;
    if (encoding != "gzip" && encoding != "x-gzip" && encoding != "deflate")
        throw std::runtime_error("The page came in an encoding that was not asked for.");
    m_packed.reset(new z_stream_s{});
    if (::inflateInit2(m_packed.get(), anyHeader) != Z_OK)
        throw std::bad_alloc();
}

void PageBody::append(std::string_view bytes)
{
    m_received += bytes.size();
    if (m_packed)
        unpack(bytes);
    else
        appendUnpacked(bytes);
}

void PageBody::unpack(std::string_view bytes)
{
    std::array<char, 65536> piece;
    m_packed->next_in = reinterpret_cast<const Bytef*>(bytes.data());
    m_packed->avail_in = static_cast<uInt>(bytes.size());
    do {
        m_packed->next_out = reinterpret_cast<Bytef*>(piece.data());
        m_packed->avail_out = static_cast<uInt>(piece.size());
        const int result = ::inflate(m_packed.get(), Z_NO_FLUSH);
        if (result == Z_MEM_ERROR)
            throw std::bad_alloc();
        // Z_BUF_ERROR only says that there was nothing to do.
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw std::runtime_error("The page arrived damaged.");
        appendUnpacked({piece.data(), piece.size() - m_packed->avail_out});
        if (result == Z_OK)
            m_isInside = true;
        if (result == Z_STREAM_END) {
            m_isInside = false;
            ::inflateReset(m_packed.get()); // another packed part may follow
        }
    } while (m_packed->avail_in > 0 || m_packed->avail_out == 0);
}

void PageBody::appendUnpacked(std::string_view bytes)
{
    if (bytes.size() > m_mostBytes - m_size)
        throw AppError("The page is larger than 64 MiB.");
    m_size += bytes.size();
    while (!bytes.empty()) {
        if (m_pieces.empty() || m_pieces.back().size() == pieceSize)
            m_pieces.emplace_back().reserve(pieceSize);
        const std::string_view fitting = bytes.substr(0, pieceSize - m_pieces.back().size());
        m_pieces.back().append(fitting);
        bytes.remove_prefix(fitting.size());
    }
}

std::string PageBody::joined() &&
{
    std::string whole;
    whole.reserve(m_size);
    for (std::string& piece : m_pieces)
        whole += std::exchange(piece, {});
    return whole;
}
