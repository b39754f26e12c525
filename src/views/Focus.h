#pragma once

class QWidget;

/// Where the focus of a window is: the keyboard's place in it while the window is active, and where
/// the keyboard comes back to while it is not. QWidget::hasFocus() knows only of the former.
namespace Focus {

/// Whether the window of `widget` has its focus on it or on something in it.
bool isIn(const QWidget& widget);

/// Whether the window of `widget` has its focus on nothing that keys are of use to: on nothing at
/// all, or on what is hidden, disabled, or without controls.
bool isLost(const QWidget& widget);

} // namespace Focus
