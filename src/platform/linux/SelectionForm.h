#pragma once

#include <cstdint>
#include <string>

/// How the data of a target lies in a property, as the clipboard's back end notes it down: the
/// property's type and the bits of its units.
struct SelectionForm
{
    std::string type;
    std::uint8_t format; // 8, 16 or 32

    /// "UTF8_STRING 8"
    std::string text() const;
    /// The reverse. What is no such text stands for bytes of the type `target`.
    static SelectionForm parse(const std::string& text, const std::string& target);
};
