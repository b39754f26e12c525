#include "HeifImage.h"

#include "Release.h"

#include <libheif/heif.h>

#include <memory>

namespace HeifImage {

namespace {

using Context = std::unique_ptr<heif_context, Release<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Release<heif_image_handle_release>>;
using Image = std::unique_ptr<heif_image, Release<heif_image_release>>;

bool succeeded(const heif_error& error)
{
    return error.code == heif_error_Ok;
}

/// A picture that owns `image` and uses its pixels without a copy.
QImage wrapped(Image image, QImage::Format format)
{
    int rowBytes = 0;
    const std::uint8_t* const pixels =
        heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &rowBytes);
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (pixels == nullptr || width <= 0 || height <= 0)
        return {};
    return QImage(
        pixels, width, height, rowBytes, format,
        [](void* owned) { heif_image_release(static_cast<heif_image*>(owned)); }, image.release());
}

bool isSize(std::int64_t width, std::int64_t height, std::int64_t mostPixels)
{
    return width > 0 && height > 0 && width <= mostPixels / height;
}

} // namespace

bool isOne(std::string_view bytes)
{
    const heif_filetype_result result = heif_check_filetype(
        reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<int>(bytes.size()));
    return result == heif_filetype_yes_supported || result == heif_filetype_maybe;
}

QImage decoded(const std::string& bytes, std::int64_t mostPixels)
{
    const Context context(heif_context_alloc());
    if (!context || !succeeded(heif_context_read_from_memory_without_copy(
                        context.get(), bytes.data(), bytes.size(), nullptr)))
        return {};
    heif_image_handle* mainPicture = nullptr;
    if (!succeeded(heif_context_get_primary_image_handle(context.get(), &mainPicture)))
        return {};
    const Handle handle(mainPicture);
    // Decoding takes memory for the whole stored picture, even if only a part of it is meant to be
    // seen.
    if (!isSize(heif_image_handle_get_width(handle.get()),
                heif_image_handle_get_height(handle.get()), mostPixels) ||
        !isSize(heif_image_handle_get_ispe_width(handle.get()),
                heif_image_handle_get_ispe_height(handle.get()), mostPixels))
        return {};
    const bool isTransparent = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    heif_image* pixels = nullptr;
    // The decoder applies the transformations. The orientation in the camera's notes (EXIF) repeats
    // them and must not be applied again.
    if (!succeeded(heif_decode_image(
            handle.get(), &pixels, heif_colorspace_RGB,
            isTransparent ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, nullptr)))
        return {};
    return wrapped(Image(pixels), isTransparent ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
}

} // namespace HeifImage
