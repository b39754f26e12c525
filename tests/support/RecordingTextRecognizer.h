#pragma once

#include "TextRecognizer.h"

#include <QImage>

#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

/// Stands in for the system's recogniser where not the reading is tested, but what comes before and
/// after it.
class RecordingTextRecognizer : public TextRecognizer
{
public:
    Reading read(const GreyImage& image) override
    {
        images.push_back(QImage(image.pixels, image.width, image.height,
                                static_cast<qsizetype>(image.rowBytes), QImage::Format_Grayscale8)
                             .copy());
        if (!error.empty())
            throw std::runtime_error(error);
        return answers.empty() ? Reading{.lines = answer} : take(answers);
    }

    Reading readPlainly(const ColourImage& image) override
    {
        plainImages.push_back(QImage(reinterpret_cast<const uchar*>(image.pixels), image.width,
                                     image.height, static_cast<qsizetype>(image.rowPixels * 4),
                                     QImage::Format_RGB32)
                                  .copy());
        return plainAnswer;
    }

    std::vector<std::string> answer; // the lines of every picture
    std::string error;               // thrown where not empty
    std::vector<QImage> images;      // what was to be read, in order

    std::deque<Reading> answers;     // of the pictures in order; instead of `answer`
    Reading plainAnswer;             // of what is read plainly
    std::vector<QImage> plainImages; // that was to be read so

private:
    static Reading take(std::deque<Reading>& readings)
    {
        Reading reading = readings.front();
        readings.pop_front();
        return reading;
    }
};
