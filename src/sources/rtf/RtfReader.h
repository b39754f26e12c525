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

/// Reads one document from its opening brace to the brace that closes it, or as far as it goes.
/// Used once.
class RtfReader
{
public:
    explicit RtfReader(std::string_view rtf) : m_tokenizer(rtf) {}

    /// The document's text.
    std::string text();

private:
    using Action = RtfKeyword::Action;

    enum class Destination { text, fonts, alternatives };

    /// What braces save and restore.
    struct State
    {
        static constexpr int noFont = -1; // the document's default one

        int font = noFont;
        int fallbackLength = 1; // characters after a \u
        Destination destination = Destination::text;
        bool isListMarker = false;
        bool isHidden = false;
        bool isDeleted = false;
    };

    void read(const RtfTokenizer::Token& token);
    void open();
    void close();
    void word(const RtfTokenizer::Token& token);
    void property(const RtfKeyword& keyword, const RtfTokenizer::Token& token);
    void setDocumentCodePage(int codePage);
    void describeFont(Action action, int number);
    void format(Action action, std::optional<int> parameter);
    void destination(Action action);
    void symbol(char symbol);
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
    std::size_t m_skipped = 0;    // open groups that are not text, the outermost and those in it
    int m_fallback = 0;           // characters still to be left out
    bool m_isAtBeginning = false; // of a group
    bool m_isOptional = false;    // after a \* there
    bool m_skipsAttachment = false;
    bool m_expectsPlaceholder = false;
};
