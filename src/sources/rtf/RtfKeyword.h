#pragma once

#include <string_view>

/// A control word of Rich Text Format that has to do with its text.
struct RtfKeyword
{
    enum class Action {
        none,
        character,          // stands for the character `value`
        layout,             // stands for the white space `value`
        endRow,             // ends a table's row
        unicode,            // a UTF-16 code unit; what readers without Unicode show comes after it
        fallbackLength,     // how much of that there is
        documentCodePage,   // the document is in the code page `value`, or in the one of its number
        defaultFont,        // of the document
        font,               // of what comes next
        fontCharacterSet,   // of the font that is being described
        fontCodePage,       // likewise
        plain,              // all properties of characters are the usual ones again
        hidden,             // the text is not shown
        deleted,            // the text was removed, and the change is not accepted yet
        skip,               // what is in the group is not text
        skipAttachment,     // likewise; a placeholder comes after it
        fontTable,          // the group describes the fonts
        alternatives,       // the group has its text twice
        unicodeAlternative, // and this is the one to read
        listMarker,         // the group is the number or bullet before a paragraph
        show,               // the group is text even where it says that it may be passed over
    };

    Action action = Action::none;
    int value = 0;

    /// Whether the word names what its group is for.
    bool isDestination() const { return action >= Action::skip; }

    /// The keyword `name`; Action::none for one that does not matter.
    static RtfKeyword find(std::string_view name);
};
