#pragma once

#include <string>
#include <utility>

/// What has been read of a document.
struct DocumentText
{
    // Not explicit: mostly the whole has been read.
    DocumentText(std::string whole = {}) : text(std::move(whole)) {}
    DocumentText(std::string part, std::string itsShare)
        : text(std::move(part)), share(std::move(itsShare))
    {}

    std::string text;  // valid UTF-8
    std::string share; // which part of the document that is, empty for the whole
};
