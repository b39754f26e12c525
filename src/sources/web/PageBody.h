#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct z_stream_s;

/// The body of a page, unpacked if the server has packed it. Qt could unpack it too, but would not
/// tell if it was cut off. One thread at a time.
class PageBody
{
public:
    /// `encoding` is the value of the header Content-Encoding. `mostBytes` is the limit of the
    /// unpacked body; all but tests give usualLimit. Throws std::runtime_error for an encoding that
    /// was not asked for.
    PageBody(std::string_view encoding, std::size_t mostBytes);

    /// In bytes. A page has some kilobytes; anything larger than this is no text.
    static constexpr std::size_t usualLimit = std::size_t{64} << 20;

    /// The value of the header Accept-Encoding for the encodings that this class unpacks.
    static constexpr const char* acceptedEncodings = "gzip";

    /// Takes the next bytes as they were sent. Unpacked they are at most a thousand times as many.
    /// Throws AppError beyond the limit, and std::runtime_error for bytes that cannot be unpacked.
    void append(std::string_view bytes);

    /// How many bytes have been taken, counted as they were sent.
    std::size_t received() const { return m_received; }

    /// Whether the bytes so far end in the middle of packed data.
    bool isCut() const { return m_isInside; }

    /// The whole body. A large one takes too long for the main thread.
    std::string joined() &&;

private:
    struct EndInflate
    {
        void operator()(z_stream_s* stream) const;
    };

    void unpack(std::string_view bytes);
    void appendUnpacked(std::string_view bytes);

    std::size_t m_mostBytes;
    std::unique_ptr<z_stream_s, EndInflate> m_packed; // null if nothing is packed
    bool m_isInside = false;                          // in packed data
    std::size_t m_received = 0;
    std::size_t m_size = 0;
    // In pieces: enlarging one string would copy everything at once.
    std::vector<std::string> m_pieces;
};
