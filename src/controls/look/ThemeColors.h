#pragma once

#include "Appearance.h"

#include <QPalette>

#include <array>

/// What a colour is for. ThemeColors has a colour for each role.
enum class ColorRole {
    window,         // the ground of the whole window
    textBackground, // the ground of fields and of the summary
    label,
    secondary,  // text that explains
    tertiary,   // placeholders
    outline,    // the edges of fields and framed areas: translucent
    separator,  // dividers, the edges of buttons: translucent
    accent,     // icons, marks, focus rings
    accentText, // links
    accentFill, // the ground of the default button
    onAccent,   // text on accentFill
    selection,  // the ground of selected text
    error,
    button,  // the ground of a button
    trough,  // the ground of a segmented control: translucent
    track,   // the empty part of a slider or progress bar
    pill,    // the chosen segment of a segmented control
    thumb,   // the part of a slider that is moved
    hover,   // laid over what the pointer is on: translucent
    pressed, // laid over what is pressed: translucent
};

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
