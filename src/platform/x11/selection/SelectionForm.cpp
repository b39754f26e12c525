#include "SelectionForm.h"

std::string SelectionForm::text() const
{
    return type + ' ' + std::to_string(format);
}

SelectionForm SelectionForm::parse(const std::string& text, const std::string& target)
{
    const std::size_t blank = text.rfind(' ');
    if (blank != std::string::npos) {
        for (const std::uint8_t format : {std::uint8_t{8}, std::uint8_t{16}, std::uint8_t{32}}) {
            if (text.compare(blank + 1, std::string::npos, std::to_string(format)) == 0)
                return {text.substr(0, blank), format};
        }
    }
    return {target, 8};
}
