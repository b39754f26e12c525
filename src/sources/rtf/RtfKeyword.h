#pragma once

#include <string_view>

/// A control word or symbol of Rich Text Format that matters for the text of a document.
struct RtfKeyword
{
    enum class Action {
        none,
        character,          // the word stands for the character `value`
        layout,             // the word stands for the white space `value`
        endRow,             // ends a table's row
        unicode,            // a UTF-16 code unit; a fallback for readers without Unicode follows
        fallbackLength,     // how long such a fallback is
        documentCodePage,   // the document's code page: `value`, or the word's number
        defaultFont,        // the document's default font
        font,               // the font of what comes next
        fontCharacterSet,   // the character set of the font being described
        fontCodePage,       // the code page of the font being described
        plain,              // resets all properties of characters
        hidden,             // the text is not shown
        deleted,            // the text was removed, and the change is not accepted yet
        skip,               // what is in the group is not text
        skipAttachment,     // not text either; a placeholder follows the group
        fontTable,          // the group describes the fonts
        alternatives,       // the group has its text in two forms
        unicodeAlternative, // this group has the form to read
        listMarker,         // the group is the number or bullet before a paragraph
        show,               // the group is text even if it is marked as optional
    };

    Action action = Action::none;
    int value = 0;

    /// Whether the word says what its group is for.
    bool isDestination() const { return action >= Action::skip; }

    /// The keyword `name`, or the symbol of this character. Its action is Action::none if it does
    /// not matter. Any thread.
    static RtfKeyword find(std::string_view name);
};
