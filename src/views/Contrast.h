#pragma once

#include <QColor>

/// How well colours stand out from each other, by the Web Content Accessibility Guidelines.
namespace Contrast {

constexpr double text = 4.5;  // what text needs
constexpr double shape = 3.0; // what large text, icons and marks need

/// From 1 (equal) to 21 (black and white). Both are taken for opaque.
double ratio(const QColor& a, const QColor& b);

/// The opaque colour that `color` gives on `ground`.
QColor over(const QColor& color, const QColor& ground);

/// `color`, as much lighter or darker, towards `limit`, as it needs to be to reach `minimum` on
/// each ground; `limit` where nothing less does. The hue stays.
QColor adjusted(const QColor& color, const QColor& limit, std::initializer_list<QColor> grounds,
                double minimum);

} // namespace Contrast
