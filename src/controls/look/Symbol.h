#pragma once

/// The icons of the interface. Each is a file in icons/.
enum class Symbol {
    quotation, // the sign of Pithwise
    clipboard,
    document,
    globe,
    viewfinder,
    window,
    display,
    rectangleViewfinder,
    trayArrow,
    circledArrow,
    lockShield,
    copy,
    notePlus,
    twoArrows,
    documentArrow,
};
