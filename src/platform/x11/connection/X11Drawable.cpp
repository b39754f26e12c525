#include "X11Drawable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace X11Drawable {

namespace {

constexpr std::int64_t mostPixels = std::int64_t{256} << 20;
constexpr int stripBytes = 16 << 20; // so that no single reply takes much memory

const xcb_visualtype_t* findVisual(const xcb_screen_t& screen, xcb_visualid_t id)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == id)
                return visuals.data;
        }
    }
    return nullptr;
}

int bitsPerPixel(const xcb_setup_t* setup, std::uint8_t depth)
{
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0;
         xcb_format_next(&formats)) {
        // QImage pads its rows to 32 bits, as every server does.
        if (formats.data->depth == depth && formats.data->scanline_pad == 32)
            return formats.data->bits_per_pixel;
    }
    return 0;
}

QImage::Format formatOf(X11Connection& connection, std::uint8_t depth, xcb_visualid_t visualId)
{
    const xcb_setup_t* setup = xcb_get_setup(connection.get());
    const xcb_visualtype_t* visual = findVisual(connection.screen(), visualId);
    const bool isHostOrder = (setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST) ==
                             (std::endian::native == std::endian::little);
    if (visual == nullptr || !isHostOrder)
        return QImage::Format_Invalid;
    const int bits = bitsPerPixel(setup, depth);
    if (bits == 32 && visual->red_mask == 0xFF0000 && visual->blue_mask == 0xFF)
        return QImage::Format_RGB32;
    if (bits == 32 && visual->red_mask == 0x3FF00000 && visual->blue_mask == 0x3FF)
        return QImage::Format_RGB30;
    if (bits == 16 && visual->red_mask == 0xF800 && visual->blue_mask == 0x1F)
        return QImage::Format_RGB16;
    return QImage::Format_Invalid;
}

X11Connection::Owned<xcb_get_image_reply_t> readStrip(X11Connection& connection,
                                                      xcb_drawable_t drawable, const QRect& strip)
{
    const auto cookie = xcb_get_image(
        connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<std::int16_t>(strip.x()),
        static_cast<std::int16_t>(strip.y()), static_cast<std::uint16_t>(strip.width()),
        static_cast<std::uint16_t>(strip.height()), ~0U);
    return connection.reply<xcb_get_image_reply_t>(cookie);
}

} // namespace

AreaQuestion askArea(X11Connection& connection, xcb_window_t window)
{
    // Here applications that draw their own window frame tell how far its shadow reaches.
    const xcb_atom_t shadow = connection.atom("_GTK_FRAME_EXTENTS");
    return {xcb_get_geometry(connection.get(), window), connection.askValues(window, shadow, 4)};
}

std::optional<QRect> area(X11Connection& connection, const AreaQuestion& question)
{
    const auto geometry = connection.reply<xcb_get_geometry_reply_t>(question.geometry);
    const std::vector<std::uint32_t> shadow = connection.values(question.shadow);
    if (!geometry)
        return std::nullopt;
    const QRect whole(0, 0, geometry->width, geometry->height);
    // A window could claim to be all shadow.
    constexpr std::uint32_t mostShadow = 256;
    if (shadow.size() != 4 || *std::max_element(shadow.begin(), shadow.end()) > mostShadow)
        return whole;
    const auto [left, right, top, bottom] =
        std::array{static_cast<int>(shadow[0]), static_cast<int>(shadow[1]),
                   static_cast<int>(shadow[2]), static_cast<int>(shadow[3])};
    const QRect visible = whole.adjusted(left, top, -right, -bottom);
    return visible.isEmpty() ? whole : visible;
}

std::optional<QImage> read(X11Connection& connection, xcb_drawable_t drawable, const QRect& area)
{
    if (area.isEmpty() || std::int64_t{area.width()} * area.height() > mostPixels)
        return std::nullopt;
    QImage image;
    const int stripRows = std::max(1, stripBytes / (4 * area.width()));
    for (int row = 0; row < area.height(); row += stripRows) {
        const int rows = std::min(stripRows, area.height() - row);
        const auto reply =
            readStrip(connection, drawable, {area.x(), area.y() + row, area.width(), rows});
        if (!reply)
            return std::nullopt;
        if (image.isNull())
            image = QImage(area.size(), formatOf(connection, reply->depth, reply->visual));
        const auto bytes = static_cast<std::size_t>(image.bytesPerLine() * rows);
        if (image.isNull() ||
            static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < bytes)
            return std::nullopt;
        std::memcpy(image.scanLine(row), xcb_get_image_data(reply.get()), bytes);
    }
    return image;
}

void write(X11Connection& connection, xcb_drawable_t drawable, xcb_gcontext_t context,
           const QImage& image, QPoint position)
{
    constexpr std::uint32_t head = 64; // more bytes than the request takes beside the pixels
    const std::uint32_t most =
        std::min<std::uint32_t>(xcb_get_maximum_request_length(connection.get()), 1 << 20) * 4;
    const int stripRows = std::max(
        1, static_cast<int>((most - head) / static_cast<std::uint32_t>(image.bytesPerLine())));
    for (int row = 0; row < image.height(); row += stripRows) {
        const int rows = std::min(stripRows, image.height() - row);
        xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, context,
                      static_cast<std::uint16_t>(image.width()), static_cast<std::uint16_t>(rows),
                      static_cast<std::int16_t>(position.x()),
                      static_cast<std::int16_t>(position.y() + row), 0,
                      connection.screen().root_depth,
                      static_cast<std::uint32_t>(image.bytesPerLine() * rows), image.scanLine(row));
    }
}

} // namespace X11Drawable
