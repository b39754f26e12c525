#include "RtfTokenizer.h"

#include <algorithm>
#include <array>
#include <charconv>

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
    const std::string_view digits = m_rest.substr(0, 2);
    unsigned char value = 0;
    const auto* const end =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    if (end - digits.data() != 2)
        return {Kind::symbol, "'"};
    take(2);
    return {Kind::bytes, std::string_view(&allBytes[value], 1)};
}

std::optional<int> RtfTokenizer::parameter()
{
    const bool isNegative = m_rest.starts_with('-');
    int value = isNegative ? -maxParameter : maxParameter; // stays where the number is larger
    const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    take(static_cast<std::size_t>(end - m_rest.data()));
    return std::clamp(value, -maxParameter, maxParameter);
}

std::string_view RtfTokenizer::take(std::size_t count)
{
    const std::string_view taken = m_rest.substr(0, count);
    m_rest.remove_prefix(taken.size());
    return taken;
}
