#pragma once

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
