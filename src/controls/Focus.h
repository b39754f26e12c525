#pragma once

class QWidget;

/// Tells where the focus of a window is. While the window is active, that is where keys go; while
/// it is not, it is where they will go once it is active again. QWidget::hasFocus() is false then.
/// Main thread.
namespace Focus {

/// Whether the focus of its window is on `widget` or on something in it.
bool isIn(const QWidget& widget);

/// Whether the focus of `widget`'s window is where keys are of no use: on nothing at all, or on
/// something that is hidden, disabled, or not a control.
bool isLost(const QWidget& widget);

} // namespace Focus
