#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct z_stream_s;

/// The body of a page as it comes from its server, unpacked where that has packed it. Qt would
/// unpack it too, but not tell when it was cut off. One thread at a time.
class PageBody
{
public:
    /// `encoding` is what the header Content-Encoding says; `mostBytes` is the limit of the
    /// unpacked body, for all but tests the one below. Throws std::runtime_error for an encoding
    /// that was not asked for.
    PageBody(std::string_view encoding, std::size_t mostBytes);

    /// A page has some kilobytes; what takes more memory than this is no text.
    static constexpr std::size_t usualLimit = std::size_t{64} << 20;

    /// The header Accept-Encoding that goes with this.
    static constexpr const char* acceptedEncodings = "gzip";

    /// Takes the next bytes as they were sent; they become a thousand times as many at most. Throws
    /// AppError beyond the limit, and std::runtime_error for bytes that cannot be unpacked.
    void append(std::string_view bytes);

    /// How many bytes were taken, as they were sent.
    std::size_t received() const { return m_received; }

    /// Whether it ends in the middle of what was packed.
    bool isCut() const { return m_isInside; }

    /// The whole body. For a large one that is work for another thread.
    std::string joined() &&;

private:
    struct EndInflate
    {
        void operator()(z_stream_s* stream) const;
    };

    void unpack(std::string_view bytes);
    void appendUnpacked(std::string_view bytes);

    std::size_t m_mostBytes;
    std::unique_ptr<z_stream_s, EndInflate> m_packed; // null where nothing is packed
    bool m_isInside = false;                          // of what is packed
    std::size_t m_received = 0;
    std::size_t m_size = 0;
    // Not one string, because enlarging it would copy everything there is at once.
    std::vector<std::string> m_pieces;
};
