#pragma once

#include "RtfCodePage.h"
#include "RtfFonts.h"
#include "RtfKeyword.h"
#include "RtfText.h"
#include "RtfTokenizer.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads one document, from its opening brace to the matching closing brace, or as far as it goes.
/// Each object is used once.
class RtfReader
{
public:
    explicit RtfReader(std::string_view rtf) : m_tokenizer(rtf) {}

    /// Reads the document and returns its text as valid UTF-8.
    std::string text();

private:
    using Action = RtfKeyword::Action;

    enum class Destination { text, fonts, alternatives };

    /// What an opening brace saves and its closing brace restores.
    struct State
    {
        static constexpr int noFont = -1; // stands for the document's default font

        int font = noFont;
        int fallbackLength = 1; // how many characters after a \u are its fallback
        Destination destination = Destination::text;
        bool isListMarker = false;
        bool isHidden = false;
        bool isDeleted = false;
    };

    void read(const RtfTokenizer::Token& token);
    void open();
    void close();
    void word(const RtfTokenizer::Token& token);
    void property(const RtfKeyword& keyword, std::optional<int> parameter);
    void setDocumentCodePage(int codePage);
    void describeFont(Action action, int number);
    void format(Action action, std::optional<int> parameter);
    void destination(Action action);
    void symbol(std::string_view symbol);
    void bytes(std::string_view bytes);
    void text(std::string_view bytes);
    void special(char32_t special);
    void character(char32_t character);
    void unicode(int value);

    State& state() { return m_states.back(); }
    bool isShown() const;
    int codePage() const;

    RtfTokenizer m_tokenizer;
    RtfText m_text;
    RtfFonts m_fonts;
    int m_documentCodePage = RtfCodePage::windowsLatin1;
    int m_defaultFont = 0;
    std::vector<State> m_states;  // of the open groups
    std::size_t m_deeper = 0;     // open groups that have no state of their own
    std::size_t m_skipped = 0;    // how many open groups, one in the other, are skipped
    int m_fallback = 0;           // characters of a fallback still to be left out
    bool m_isAtBeginning = false; // just after an opening brace
    bool m_isOptional = false;    // after a \* at the beginning of a group
    bool m_skipsAttachment = false;
    bool m_expectsPlaceholder = false;
};
