#include "X11Screenshot.h"

#include "WriteAll.h"
#include "X11Drawable.h"
#include "X11RegionOverlay.h"

#include <QBuffer>
#include <QImageWriter>

#include <sys/eventfd.h>
#include <sys/mman.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

QRect screenArea(X11Connection& connection)
{
    return {0, 0, connection.screen().width_in_pixels, connection.screen().height_in_pixels};
}

std::optional<QImage> readScreen(X11Connection& connection)
{
    return X11Drawable::read(connection, connection.root(), screenArea(connection));
}

/// The part of `area`, in the coordinates of `window`, that lies on the screen.
QRect onScreen(X11Connection& connection, xcb_window_t window, const QRect& area)
{
    const auto origin = connection.reply<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0));
    if (!origin)
        return {};
    return area & screenArea(connection).translated(-origin->dst_x, -origin->dst_y);
}

std::optional<QImage> readWindow(X11Connection& connection, xcb_window_t window)
{
    const std::optional<QRect> area =
        X11Drawable::area(connection, X11Drawable::askArea(connection, window));
    if (!area)
        return std::nullopt;
    // With a compositor the window can be read whole, even what is beyond the screen's edge or
    // below other windows.
    if (std::optional<QImage> image = X11Drawable::read(connection, window, *area))
        return image;
    return X11Drawable::read(connection, window, onScreen(connection, window, *area));
}

[[noreturn]] void fail(const std::string& cause)
{
    throw std::runtime_error("The screenshot could not be written: " + cause + ".");
}

std::string png(const QImage& image)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, "png");
    writer.setQuality(80); // zlib's fastest level: the file lives for a second
    if (!writer.write(image))
        fail(writer.errorString().toStdString());
    return buffer.data().toStdString();
}

/// `image` in a file in memory, which goes with its last descriptor.
std::optional<FileDescriptor> written(const std::optional<QImage>& image)
{
    if (!image)
        return std::nullopt;
    const std::string bytes = png(*image);
    FileDescriptor file(::memfd_create("pithwise-capture", MFD_CLOEXEC));
    if (file.value() < 0 || writeAll(file.value(), bytes) < bytes.size())
        fail(std::generic_category().message(errno));
    return file;
}

} // namespace

X11Screenshot::X11Screenshot() : m_cancel(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_cancel.value() < 0)
        throw std::system_error(errno, std::generic_category(), "Screenshot");
}

std::optional<FileDescriptor> X11Screenshot::takeScreen()
{
    const auto connection = X11Connection::open();
    return connection ? written(readScreen(*connection)) : std::nullopt;
}

std::optional<FileDescriptor> X11Screenshot::takeWindow(std::uint32_t id)
{
    const auto connection = X11Connection::open();
    return connection ? written(readWindow(*connection, id)) : std::nullopt;
}

std::optional<FileDescriptor> X11Screenshot::takeRegion()
{
    std::optional<QImage> selected;
    if (const auto connection = X11Connection::open()) {
        if (const std::optional<QImage> screen = readScreen(*connection))
            selected = X11RegionOverlay::select(*connection, *screen, m_cancel.value());
    }
    ::eventfd_t count = 0;
    ::eventfd_read(m_cancel.value(), &count); // a wish to cancel counts once
    return written(selected);
}

void X11Screenshot::cancelRegion()
{
    ::eventfd_write(m_cancel.value(), 1);
}
