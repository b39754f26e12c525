#pragma once

#include <QImage>

/// The small label that shows how large the selected rectangle is.
namespace SizeLabel {

/// The label "width × height", light letters on a dark ground. `points` is the size in points; the
/// picture is in pixels. A null image without a QGuiApplication, which provides the fonts. Any
/// thread.
QImage render(QSize points, double pixelsPerPoint);

} // namespace SizeLabel
