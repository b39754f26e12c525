#pragma once

#include "FileDescriptor.h"

#include <QFile>
#include <QImage>

#include <optional>

/// What Screenshot takes.
namespace ScreenPicture {

/// The picture in `file`; a null image where there is none.
inline QImage of(const std::optional<FileDescriptor>& file)
{
    QFile device;
    if (!file || !device.open(file->value(), QIODevice::ReadOnly) || !device.seek(0))
        return {};
    return QImage::fromData(device.readAll(), "png");
}

} // namespace ScreenPicture
