#include "RtfDecoder.h"

#include "RtfCodePage.h"
#include "RtfSymbols.h"

#include <iconv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

static constexpr char16_t replacement = u'\uFFFD';

/// Makes ICU write U+FFFD for what it cannot decode. By itself it writes a control character for
/// some bytes.
static void substitute(const void*, UConverterToUnicodeArgs* arguments, const char*, std::int32_t,
                       UConverterCallbackReason reason, UErrorCode* error)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *error = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, error);
}

/// Decodes Johab, the one code page that ICU does not have, by the C library.
class RtfDecoder::Johab
{
public:
    Johab() : m_converter(::iconv_open("UTF-16LE", "JOHAB")) {}
    ~Johab()
    {
        if (isOpen())
            ::iconv_close(m_converter);
    }
    Johab(const Johab&) = delete;
    Johab& operator=(const Johab&) = delete;

    void append(std::string_view bytes, std::u16string& units)
    {
        std::array<unsigned char, 512> buffer{};
        while (!bytes.empty()) {
            char* in = const_cast<char*>(bytes.data()); // iconv does not write there
            std::size_t inLeft = bytes.size();
            char* out = reinterpret_cast<char*>(buffer.data());
            std::size_t outLeft = buffer.size();
            const bool isFull = isOpen() &&
                                ::iconv(m_converter, &in, &inLeft, &out, &outLeft) ==
                                    static_cast<std::size_t>(-1) &&
                                errno == E2BIG;
            for (std::size_t i = 0; i + 1 < buffer.size() - outLeft; i += 2)
                units += static_cast<char16_t>(buffer[i] | (buffer[i + 1] << 8));
            bytes.remove_prefix(bytes.size() - inLeft);
            if (!isFull && !bytes.empty()) {
                units += replacement;
                bytes.remove_prefix(1);
            }
        }
    }

private:
    bool isOpen() const { return reinterpret_cast<std::intptr_t>(m_converter) != -1; }

    iconv_t m_converter;
};

RtfDecoder::RtfDecoder() = default;
RtfDecoder::~RtfDecoder() = default;

std::u16string_view RtfDecoder::decoded(std::string_view bytes, int codePage)
{
    m_units.clear();
    if (codePage == RtfCodePage::symbolFont || codePage == RtfCodePage::dingbats) {
        for (const char byte : bytes)
            m_units += RtfSymbols::character(static_cast<unsigned char>(byte), codePage);
    } else if (codePage == RtfCodePage::johab) {
        if (!m_johab)
            m_johab = std::make_unique<Johab>();
        m_johab->append(bytes, m_units);
    } else {
        decodeWithIcu(bytes, codePage);
    }
    return m_units;
}

void RtfDecoder::decodeWithIcu(std::string_view bytes, int codePage)
{
    UErrorCode error = U_ZERO_ERROR;
    icu::LocalUConverterPointer& converter = m_converters[codePage];
    if (converter.isNull()) {
        converter.adoptInstead(ucnv_open(RtfCodePage::converterName(codePage), &error));
        ucnv_setToUCallBack(converter.getAlias(), substitute, nullptr, nullptr, nullptr, &error);
    }
    const char* in = bytes.data();
    const char* const end = in + bytes.size();
    do {
        std::array<char16_t, 1024> buffer; // NOLINT: written before it is read
        char16_t* out = buffer.data();
        error = U_ZERO_ERROR;
        ucnv_toUnicode(converter.getAlias(), &out, buffer.data() + buffer.size(), &in, end, nullptr,
                       true, &error);
        m_units.append(buffer.data(), out);
    } while (error == U_BUFFER_OVERFLOW_ERROR);
    if (U_FAILURE(error)) // ICU is without this converter
        m_units.append(static_cast<std::size_t>(end - in), replacement);
}
