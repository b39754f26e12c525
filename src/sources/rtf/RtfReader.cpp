#include "RtfReader.h"

#include "RtfSymbols.h"

#include <algorithm>
#include <utility>

/// Real documents nest a few dozen groups. Groups nested deeper than this share a state, so that a
/// document of nothing but braces takes no memory.
static constexpr std::size_t maxStates = 10000;

/// The byte that writers put in the place of an attachment.
static constexpr char placeholder = '\xAC';

/// Whether `character` is a control character, which is left out of list markers. Some writers put
/// the pattern of a list's level, with the numbers of its parts, where a marker belongs. A negative
/// value is a byte of another character, and a tab is a part of a marker.
static bool isControl(int character)
{
    return (character >= 0 && character < ' ' && character != '\t') ||
           (character >= 0x7F && character < 0xA0);
}

std::string RtfReader::text()
{
    for (;;) {
        const RtfTokenizer::Token token = m_tokenizer.next();
        if (token.kind == RtfTokenizer::Kind::end)
            break;
        read(token);
        if (m_states.empty())
            break;
    }
    return m_text.take();
}

void RtfReader::read(const RtfTokenizer::Token& token)
{
    using Kind = RtfTokenizer::Kind;
    if (token.kind == Kind::open)
        open();
    else if (token.kind == Kind::close)
        close();
    else if (m_skipped > 0)
        return;
    else if (token.kind == Kind::word)
        word(token);
    else if (token.kind == Kind::symbol)
        symbol(token.text);
    else
        bytes(token.text);
    m_isAtBeginning = token.kind == Kind::open;
}

void RtfReader::open()
{
    m_fallback = 0;
    m_isOptional = false;
    m_expectsPlaceholder = false;
    if (m_skipped > 0)
        ++m_skipped;
    else if (m_states.size() == maxStates)
        ++m_deeper;
    else
        m_states.push_back(m_states.empty() ? State() : state());
}

void RtfReader::close()
{
    m_fallback = 0;
    m_isOptional = false;
    m_expectsPlaceholder = m_skipped == 1 && m_skipsAttachment;
    if (m_skipped > 1) {
        --m_skipped;
        return;
    }
    m_skipped = 0;
    if (m_deeper > 0)
        --m_deeper;
    else
        m_states.pop_back();
}

void RtfReader::word(const RtfTokenizer::Token& token)
{
    const RtfKeyword keyword = RtfKeyword::find(token.text);
    const bool isOptional = std::exchange(m_isOptional, false);
    if (keyword.isDestination())
        destination(keyword.action);
    else if (isOptional)
        destination(Action::skip);
    else
        property(keyword, token.parameter);
}

void RtfReader::property(const RtfKeyword& keyword, std::optional<int> parameter)
{
    const int number = parameter.value_or(0);
    switch (keyword.action) {
    case Action::character:
        special(static_cast<char32_t>(keyword.value));
        break;
    case Action::layout:
        character(static_cast<char32_t>(keyword.value));
        break;
    case Action::endRow:
        if (isShown())
            m_text.endRow();
        break;
    case Action::unicode:
        if (parameter)
            unicode(number);
        break;
    case Action::documentCodePage:
        setDocumentCodePage(keyword.value != 0 ? keyword.value : number);
        break;
    case Action::defaultFont:
        m_defaultFont = number;
        break;
    default:
        if (state().destination == Destination::fonts)
            describeFont(keyword.action, number);
        else
            format(keyword.action, parameter);
        break;
    }
}

void RtfReader::setDocumentCodePage(int codePage)
{
    if (RtfCodePage::isKnown(codePage))
        m_documentCodePage = codePage;
}

void RtfReader::describeFont(Action action, int number)
{
    if (action == Action::font)
        m_fonts.describe(number);
    else if (action == Action::fontCharacterSet)
        m_fonts.setCharacterSet(number);
    else if (action == Action::fontCodePage)
        m_fonts.setCodePage(number);
}

void RtfReader::format(Action action, std::optional<int> parameter)
{
    const bool isOn = parameter != 0;
    State& current = state();
    switch (action) {
    case Action::fallbackLength:
        current.fallbackLength = std::max(parameter.value_or(1), 0);
        break;
    case Action::font:
        current.font = parameter.value_or(0);
        break;
    case Action::hidden:
        current.isHidden = isOn;
        break;
    case Action::deleted:
        current.isDeleted = isOn;
        break;
    case Action::plain:
        current.font = State::noFont;
        current.isHidden = false;
        current.isDeleted = false;
        break;
    default:
        break;
    }
}

void RtfReader::destination(Action action)
{
    if (m_states.size() == 1)
        return; // no writer means the whole document
    State& current = state();
    switch (action) {
    case Action::skip:
    case Action::skipAttachment:
        m_skipped = 1;
        m_skipsAttachment = action == Action::skipAttachment;
        break;
    case Action::fontTable:
        current.destination = Destination::fonts;
        break;
    case Action::listMarker:
        current.isListMarker = true;
        break;
    case Action::alternatives:
        if (current.destination == Destination::text)
            current.destination = Destination::alternatives;
        break;
    case Action::unicodeAlternative:
        if (current.destination == Destination::alternatives)
            current.destination = Destination::text;
        break;
    default:
        break;
    }
}

void RtfReader::symbol(std::string_view symbol)
{
    m_isOptional = symbol == "*" && m_isAtBeginning;
    if (symbol == "\\" || symbol == "{" || symbol == "}")
        bytes(symbol);
    else
        property(RtfKeyword::find(symbol), std::nullopt);
}

void RtfReader::bytes(std::string_view bytes)
{
    m_isOptional = false;
    if (std::exchange(m_expectsPlaceholder, false) && bytes.starts_with(placeholder))
        bytes.remove_prefix(1);
    const std::size_t left = std::min(bytes.size(), static_cast<std::size_t>(m_fallback));
    m_fallback -= static_cast<int>(left);
    bytes.remove_prefix(left);
    if (state().destination == Destination::fonts)
        m_fonts.appendName(bytes);
    else if (isShown() && !bytes.empty() && bytes.front() != '\0')
        text(bytes);
}

/// Adds text to the document, without control characters in a list marker. `bytes` is not empty.
void RtfReader::text(std::string_view bytes)
{
    if (!m_states.back().isListMarker) {
        m_text.appendBytes(bytes, codePage());
        return;
    }
    std::string shown(bytes);
    std::erase_if(shown, isControl);
    if (!shown.empty())
        m_text.appendBytes(shown, codePage());
}

/// Adds a character that a word or symbol stands for. It counts as a character of the fallback
/// after a \u. Other words do not, so that a writer who leaves out the fallback loses no paragraph.
void RtfReader::special(char32_t special)
{
    if (m_fallback > 0)
        --m_fallback;
    else
        character(special);
}

void RtfReader::character(char32_t character)
{
    if (isShown())
        m_text.appendCharacter(character);
}

void RtfReader::unicode(int value)
{
    m_fallback = state().fallbackLength;
    if (value < 0)
        value += 0x10000; // the format's numbers are signed and have 16 bits
    if (!isShown() || value == 0 || (state().isListMarker && isControl(value)))
        return;
    const int page = codePage();
    // Only a font of symbols can show these characters. Writers use them for the marks of lists,
    // and some forget to name the font.
    const bool isSymbol = value > 0xF020 && value <= 0xF0FF;
    if (page < 0 && value >= 0xE000 && value <= 0xF8FF)
        m_text.appendUnit(RtfSymbols::character(static_cast<char16_t>(value), page));
    else if (isSymbol)
        m_text.appendUnit(
            RtfSymbols::character(static_cast<char16_t>(value), RtfCodePage::dingbats));
    else if (value > 0 && value < 0x10000)
        m_text.appendUnit(static_cast<char16_t>(value));
    else
        m_text.appendCharacter(static_cast<char32_t>(value));
}

bool RtfReader::isShown() const
{
    const State& current = m_states.back();
    return current.destination == Destination::text && !current.isHidden && !current.isDeleted;
}

int RtfReader::codePage() const
{
    const int font = m_states.back().font;
    const int own = m_fonts.codePage(font == State::noFont ? m_defaultFont : font);
    return own != 0 ? own : m_documentCodePage;
}
