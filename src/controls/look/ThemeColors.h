#pragma once

#include "Appearance.h"
#include "ColorRole.h"

#include <QPalette>

#include <array>

/// The colours of one appearance. Whatever the desktop's highlight colour is, text has a contrast
/// of at least 4.5, and icons and marks of at least 3, on every ground that they are drawn on.
class ThemeColors
{
public:
    explicit ThemeColors(const Appearance& appearance);

    const QColor& operator[](ColorRole role) const { return m_colors[index(role)]; }

    /// The colours for what Qt paints itself: text, selections and menus.
    QPalette palette() const;

private:
    static constexpr std::size_t index(ColorRole role) { return static_cast<std::size_t>(role); }
    QColor& at(ColorRole role) { return m_colors[index(role)]; }
    void setHighContrast(bool isDark);
    void setAccent(const QColor& highlight, bool isDark);

    std::array<QColor, static_cast<std::size_t>(ColorRole::pressed) + 1> m_colors;
};
