#pragma once

#include <QAccessible>

class QWidget;

/// What screen readers take a widget for. Main thread.
namespace AccessibleRole {

/// Requires: nothing has been told of `widget` yet, as is so in its constructor.
void set(QWidget& widget, QAccessible::Role role);

} // namespace AccessibleRole
