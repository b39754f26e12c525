#pragma once

#include <QAccessible>

class QWidget;

/// Sets what screen readers take a widget for. Main thread.
namespace AccessibleRole {

/// Makes `role` the role of `widget`. Requires: no screen reader has been told of `widget` yet;
/// that is so in its constructor.
void set(QWidget& widget, QAccessible::Role role);

} // namespace AccessibleRole
