#pragma once

#include <string>
#include <utility>

/// The text of a document, or of the part of it that could be read.
struct DocumentText
{
    // Not explicit, because mostly the whole document has been read.
    DocumentText(std::string itsText = {}, std::string itsShare = {})
        : text(std::move(itsText)), share(std::move(itsShare))
    {}

    std::string text;  // valid UTF-8
    std::string share; // which part of the document it is, empty for the whole
};
