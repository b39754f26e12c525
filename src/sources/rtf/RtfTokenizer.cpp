#include "RtfTokenizer.h"

#include <algorithm>
#include <array>

/// All bytes in order, so that the text of an escaped byte can be a view too.
static constexpr auto allBytes = [] {
    std::array<char, 256> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i);
    return bytes;
}();

static bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The value of a hexadecimal digit, -1 if `c` is none.
static int digitValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

static constexpr std::string_view meaningless("\r\n\0", 3);
static constexpr std::string_view endsOfText("\r\n\0\\{}", 6);

RtfTokenizer::Token RtfTokenizer::next()
{
    take(std::min(m_rest.find_first_not_of(meaningless), m_rest.size()));
    if (m_rest.empty())
        return {};
    switch (m_rest.front()) {
    case '{':
        return {Kind::open, take(1)};
    case '}':
        return {Kind::close, take(1)};
    case '\\':
        take(1);
        return control();
    default:
        return {Kind::bytes, take(m_rest.find_first_of(endsOfText))};
    }
}

RtfTokenizer::Token RtfTokenizer::control()
{
    if (m_rest.empty())
        return {};
    if (isLetter(m_rest.front()))
        return word();
    if (m_rest.front() == '\'')
        return escapedByte();
    return {Kind::symbol, take(1)};
}

RtfTokenizer::Token RtfTokenizer::word()
{
    const auto* const end = std::find_if_not(m_rest.begin(), m_rest.end(), isLetter);
    Token token{Kind::word, take(static_cast<std::size_t>(end - m_rest.begin()))};
    token.parameter = parameter();
    if (m_rest.starts_with(' '))
        take(1);
    if (token.text == "bin" && token.parameter.value_or(0) > 0)
        take(static_cast<std::size_t>(*token.parameter));
    return token;
}

RtfTokenizer::Token RtfTokenizer::escapedByte()
{
    take(1);
    const int high = m_rest.size() < 2 ? -1 : digitValue(m_rest[0]);
    const int low = m_rest.size() < 2 ? -1 : digitValue(m_rest[1]);
    if (high < 0 || low < 0)
        return {Kind::symbol, "'"};
    take(2);
    const auto value = static_cast<unsigned char>(high * 16 + low);
    return {Kind::bytes, std::string_view(&allBytes[value], 1)};
}

std::optional<int> RtfTokenizer::parameter()
{
    const bool isNegative = m_rest.size() > 1 && m_rest[0] == '-' && isDigit(m_rest[1]);
    if (isNegative)
        take(1);
    if (m_rest.empty() || !isDigit(m_rest.front()))
        return std::nullopt;
    long long value = 0;
    for (; !m_rest.empty() && isDigit(m_rest.front()); take(1))
        value = std::min<long long>(value * 10 + (m_rest.front() - '0'), maxParameter);
    return static_cast<int>(isNegative ? -value : value);
}

std::string_view RtfTokenizer::take(std::size_t count)
{
    const std::string_view taken = m_rest.substr(0, count);
    m_rest.remove_prefix(taken.size());
    return taken;
}
