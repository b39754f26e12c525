#pragma once

#include "TextRecognizer.h"

#include <QImage>

#include <stdexcept>
#include <string>
#include <vector>

/// Stands in for the system's recogniser where not the reading is tested, but what comes before and
/// after it.
class RecordingTextRecognizer : public TextRecognizer
{
public:
    std::vector<std::string> lines(const GreyImage& image) override
    {
        images.push_back(QImage(image.pixels, image.width, image.height,
                                static_cast<qsizetype>(image.rowBytes), QImage::Format_Grayscale8)
                             .copy());
        if (!error.empty())
            throw std::runtime_error(error);
        return answer;
    }

    std::vector<std::string> answer; // the lines of every picture
    std::string error;               // thrown where not empty
    std::vector<QImage> images;      // what was to be read, in order
};
