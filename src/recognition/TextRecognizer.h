#pragma once

#include "Interface.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Recognises printed text in a picture, at the most accurate level the system offers, in English
/// and the user's language. An object is used by one thread at a time.
class TextRecognizer : public Interface
{
public:
    /// A picture in shades of grey, from 0 for black to 255 for white. Not owned.
    struct GreyImage
    {
        const std::uint8_t* pixels;
        int width;            // pixels
        int height;           // pixels
        std::size_t rowBytes; // from the start of one row to the start of the next
    };

    /// A picture in colours, each 0x00RRGGBB; the highest byte is ignored. Not owned.
    struct ColourImage
    {
        const std::uint32_t* pixels;
        int width;
        int height;
        std::size_t rowPixels;
    };

    struct Reading
    {
        /// The best reading of every line of text, in reading order. Valid UTF-8. A line that the
        /// recogniser has no reading for is an empty string.
        std::vector<std::string> lines;
        /// How many letters have been read. The less sure a letter is, the less it counts.
        double certainty = 0;
        /// Whether there seems to be text that was not read, or not well.
        bool isDoubtful = false;
    };

    /// The text in `image`, also small and faint text. Throws std::runtime_error with a sentence
    /// for the user if recognising fails. Blocks, with a full page for seconds.
    virtual Reading read(const GreyImage& image) = 0;

    /// Like read(), but leaves it to the recogniser alone to prepare the picture. Use it where our
    /// own preparation does not suit the picture: noise, colours of the same shade.
    virtual Reading readPlainly(const ColourImage& image) = 0;

    /// The system's recogniser. Throws std::runtime_error with a sentence for the user if it is not
    /// installed.
    static std::unique_ptr<TextRecognizer> create();
};
