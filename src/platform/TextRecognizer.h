#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Recognises printed text in a picture, at the most accurate level the system offers, in English
/// and the user's language. An object is used by one thread at a time.
class TextRecognizer
{
public:
    /// A picture in shades of grey, 0 being black; not owned.
    struct GreyImage
    {
        const std::uint8_t* pixels;
        int width;            // pixels
        int height;           // pixels
        std::size_t rowBytes; // from the start of one row to that of the next
    };

    /// A picture in colours, each 0x00RRGGBB, of which the first byte is not looked at; not owned.
    struct ColourImage
    {
        const std::uint32_t* pixels;
        int width;
        int height;
        std::size_t rowPixels;
    };

    struct Reading
    {
        /// The best reading of every line of text, in reading order, valid UTF-8; a line the
        /// recogniser has no reading for is an empty string.
        std::vector<std::string> lines;
        /// How many letters are read, each counting the less the less it is sure.
        double certainty = 0;
        /// Whether text seems to be there that was not read, or not well.
        bool isDoubtful = false;
    };

    virtual ~TextRecognizer() = default;

    /// The text in `image`, small and faint text included. Throws std::runtime_error with a
    /// sentence for the user when recognising fails. Blocks, for seconds with a full page.
    virtual Reading read(const GreyImage& image) = 0;

    /// The same by the recogniser's own ways alone, for what the preparation of pictures does not
    /// suit: noise, colours of the same shade.
    virtual Reading readPlainly(const ColourImage& image) = 0;

    /// The system's recogniser. Throws std::runtime_error with a sentence for the user when it is
    /// not installed.
    static std::unique_ptr<TextRecognizer> create();

protected:
    TextRecognizer() = default;
    TextRecognizer(const TextRecognizer&) = default;
    TextRecognizer& operator=(const TextRecognizer&) = default;
};
