#pragma once

/// What a colour is for; ThemeColors has one for each.
enum class ColorRole {
    window,         // the ground of everything
    textBackground, // the ground of fields and of the summary
    label,
    secondary,  // text that explains
    tertiary,   // placeholders
    outline,    // the edges of fields and framed areas: translucent
    separator,  // dividers, the edges of buttons: translucent
    accent,     // icons, marks, focus rings
    accentText, // links
    accentFill, // the ground of the default button
    onAccent,   // text on it
    selection,  // the ground of selected text
    error,
    button,  // the ground of a button, over the window
    trough,  // what a segmented control lies in: translucent
    track,   // of a slider or a progress bar, where it is empty
    pill,    // the chosen segment
    thumb,   // of a slider
    hover,   // laid over what the pointer is on: translucent
    pressed, // laid over what is pressed: translucent
};
