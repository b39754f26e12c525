#pragma once

#include "Accessibility.h"

/// For sessions that do not let programs see what is in front.
class NullAccessibility : public Accessibility
{
public:
    bool isTrusted() override { return false; }
    std::optional<std::string> selectedText(std::chrono::milliseconds) override { return {}; }
};
