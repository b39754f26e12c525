#pragma once

#include <cstdint>
#include <string>

/// How the data of a target lie in a property of the X server: the property's type, and how many
/// bits a unit has. The clipboard's back end keeps this with the data.
struct SelectionForm
{
    std::string type;
    std::uint8_t format; // 8, 16 or 32

    /// As a text, such as "UTF8_STRING 8".
    std::string text() const;
    /// The form that text() has written as `text`. Any other text means bytes (8 bits) of the type
    /// `target`.
    static SelectionForm parse(const std::string& text, const std::string& target);
};
