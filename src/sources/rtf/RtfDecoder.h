#pragma once

#include <unicode/ucnv.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

/// Turns bytes in any code page of RtfCodePage into UTF-16. Bytes that the code page does not have
/// become U+FFFD. Keeps converters between calls. One thread at a time.
class RtfDecoder
{
public:
    RtfDecoder();
    ~RtfDecoder();
    RtfDecoder(const RtfDecoder&) = delete;
    RtfDecoder& operator=(const RtfDecoder&) = delete;

    /// The text that `bytes` stand for. The view is valid until the next call.
    std::u16string_view decoded(std::string_view bytes, int codePage);

private:
    class Johab;

    void decodeWithIcu(std::string_view bytes, int codePage);

    std::map<int, icu::LocalUConverterPointer> m_converters;
    std::unique_ptr<Johab> m_johab;
    std::u16string m_units;
};
