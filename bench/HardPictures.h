#pragma once

#include <QImage>

#include <string>
#include <vector>

/// Pictures of one text in which it is hard to read. Needs a QGuiApplication.
namespace HardPictures {

/// Pictures with one difficulty, in several fonts and sizes.
struct Row
{
    std::string name;
    std::vector<QImage> pictures;
};

/// The text, word by word; punctuation belongs to the word it touches.
std::vector<std::string> words();

/// The same at every call.
std::vector<Row> rows();

} // namespace HardPictures
