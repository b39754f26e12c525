#include "X11RegionPicture.h"

#include "SizeLabel.h"
#include "X11Drawable.h"

#include <QPainter>

#include <array>

X11RegionPicture::X11RegionPicture(X11Connection& connection, const QImage& screen)
    : m_connection(connection),
      m_format(screen.format()),
      m_area(screen.rect()),
      m_pixelsPerPoint(connection.pixelsPerPoint()),
      m_context(xcb_generate_id(connection.get())),
      m_bright(makePixmap()),
      m_dim(makePixmap()),
      m_frame(makePixmap()),
      m_window(xcb_generate_id(connection.get()))
{
    const std::array<std::uint32_t, 2> values = {connection.screen().white_pixel, 0};
    xcb_create_gc(connection.get(), m_context, m_frame,
                  XCB_GC_FOREGROUND | XCB_GC_GRAPHICS_EXPOSURES, values.data());
    QImage dimmed = screen;
    QPainter(&dimmed).fillRect(m_area, QColor(0, 0, 0, 128));
    X11Drawable::write(connection, m_bright, m_context, screen, {});
    X11Drawable::write(connection, m_dim, m_context, dimmed, {});
    copy(m_dim, m_frame, m_area);
    makeWindow();
}

X11RegionPicture::~X11RegionPicture()
{
    xcb_destroy_window(m_connection.get(), m_window);
    // Waits for the server, so that the caller goes on only when the window is off the screen.
    m_connection.finish();
}

void X11RegionPicture::show() const
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection.get(), m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_map_window(m_connection.get(), m_window);
    xcb_flush(m_connection.get());
}

void X11RegionPicture::update(const RegionGesture& gesture)
{
    const QRect before = m_drawn;
    copy(m_dim, m_frame, before);
    m_drawn = draw(gesture.rectangle(), gesture.pointer());
    copy(m_frame, m_window, before | m_drawn);
    xcb_flush(m_connection.get());
}

xcb_pixmap_t X11RegionPicture::makePixmap() const
{
    const xcb_pixmap_t pixmap = xcb_generate_id(m_connection.get());
    xcb_create_pixmap(m_connection.get(), m_connection.screen().root_depth, pixmap,
                      m_connection.root(), static_cast<std::uint16_t>(m_area.width()),
                      static_cast<std::uint16_t>(m_area.height()));
    return pixmap;
}

void X11RegionPicture::makeWindow() const
{
    // The frame is the window's background, so the server itself shows it wherever the window is
    // uncovered. The window manager does not touch the window.
    const std::array<std::uint32_t, 2> values = {m_frame, 1};
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0,
                      static_cast<std::uint16_t>(m_area.width()),
                      static_cast<std::uint16_t>(m_area.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT,
                      values.data());
}

/// Draws the rectangle and its size onto the frame. Returns the area that they cover.
QRect X11RegionPicture::draw(const QRect& rectangle, QPoint pointer) const
{
    if (rectangle.isEmpty())
        return {};
    const int line = std::max(1, qRound(m_pixelsPerPoint));
    const QRect outer = rectangle.adjusted(-line, -line, line, line);
    fill(outer);
    copy(m_bright, m_frame, rectangle);
    return (outer | drawLabel(rectangle.size(), pointer)) & m_area;
}

QRect X11RegionPicture::drawLabel(QSize size, QPoint pointer) const
{
    const QSize points(qRound(size.width() / m_pixelsPerPoint),
                       qRound(size.height() / m_pixelsPerPoint));
    const QImage label = SizeLabel::render(points, m_pixelsPerPoint).convertToFormat(m_format);
    if (label.isNull())
        return {};
    const int distance = qRound(12 * m_pixelsPerPoint);
    QRect place(pointer + QPoint(distance, distance), label.size());
    if (place.right() > m_area.right())
        place.moveRight(pointer.x() - distance);
    if (place.bottom() > m_area.bottom())
        place.moveBottom(pointer.y() - distance);
    X11Drawable::write(m_connection, m_frame, m_context, label, place.topLeft());
    return place;
}

void X11RegionPicture::copy(xcb_drawable_t from, xcb_drawable_t to, const QRect& area) const
{
    if (area.isEmpty())
        return;
    const auto x = static_cast<std::int16_t>(area.x());
    const auto y = static_cast<std::int16_t>(area.y());
    xcb_copy_area(m_connection.get(), from, to, m_context, x, y, x, y,
                  static_cast<std::uint16_t>(area.width()),
                  static_cast<std::uint16_t>(area.height()));
}

void X11RegionPicture::fill(const QRect& area) const
{
    const xcb_rectangle_t rectangle = {
        static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
        static_cast<std::uint16_t>(area.width()), static_cast<std::uint16_t>(area.height())};
    xcb_poly_fill_rectangle(m_connection.get(), m_frame, m_context, 1, &rectangle);
}
