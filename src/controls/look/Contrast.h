#pragma once

#include <QColor>

/// Measures how well colours stand out from each other, by the Web Content Accessibility
/// Guidelines.
namespace Contrast {

constexpr double text = 4.5;  // the least ratio for text
constexpr double shape = 3.0; // the least ratio for large text, icons and marks

/// The contrast of two colours, from 1 (equal) to 21 (black and white). Both are taken as opaque.
double ratio(const QColor& a, const QColor& b);

/// The opaque colour that `color` results in when it is laid over `ground`.
QColor over(const QColor& color, const QColor& ground);

/// `color` made lighter or darker, towards `limit`, just enough for a contrast of `minimum` with
/// each ground. `limit` if nothing before it suffices. The hue stays.
QColor adjusted(const QColor& color, const QColor& limit, std::initializer_list<QColor> grounds,
                double minimum);

} // namespace Contrast
