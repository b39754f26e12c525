#pragma once

#include <QColor>

/// How the desktop wants its programs to look.
struct Appearance
{
    bool isDark = false;
    bool isHighContrast = false;
    bool isMotionReduced = false;
    QColor highlight; // invalid if the desktop has none of its own

    bool operator==(const Appearance&) const = default;
};
