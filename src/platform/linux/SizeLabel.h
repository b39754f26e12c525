#pragma once

#include <QImage>

/// The little sign that tells how large the selected rectangle is.
namespace SizeLabel {

/// "width × height" in light letters on a dark ground; the size is in points, the picture in
/// pixels. A null image without a QGuiApplication, which brings the fonts. Any thread.
QImage render(QSize points, double pixelsPerPoint);

} // namespace SizeLabel
